#include "ui/window/window_place.h"

#include "platform/settings_store.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

#include <algorithm>
#include <cmath>

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

const auto Left = u"WindowLeft"_s;
const auto Top = u"WindowTop"_s;
const auto Width = u"WindowWidth"_s;
const auto Height = u"WindowHeight"_s;
const auto Maximized = u"WindowMaximized"_s;
constexpr QSize FirstSize(1280, 820);
constexpr QSize SmallestSize(960, 600);
constexpr int FrameHeight = 40; // of the title bar that the desktop adds
constexpr double FarthestPlace = 1 << 20;

QList<QRect> freeAreas() {
    QList<QRect> areas;
    for (const QScreen* screen : QGuiApplication::screens())
        areas.append(screen->availableGeometry());
    return areas;
}

QSize fitting(const QSize& size, const QRect& screen) {
    return size.boundedTo(screen.size() - QSize(0, FrameHeight)).expandedTo(SmallestSize);
}

QRect inTheMiddle(const QSize& size, const QRect& screen) {
    QRect area(QPoint(), fitting(size, screen));
    area.moveCenter(screen.center());
    area.moveTop(std::max(area.top(), screen.top() + FrameHeight));
    return area;
}

} // namespace

WindowPlace firstPlace(const std::optional<WindowPlace>& last, const QList<QRect>& screens) {
    if (!last)
        return {inTheMiddle(FirstSize, screens.constFirst()), false};
    for (const QRect& screen : screens) {
        const bool isWithin = screen.adjusted(0, 0, 0, FrameHeight).contains(last->area);
        if (isWithin)
            return *last;
        if (screen.contains(last->area.center()))
            return {inTheMiddle(last->area.size(), screen), last->isMaximized};
    }
    return {inTheMiddle(last->area.size(), screens.constFirst()), last->isMaximized};
}

std::optional<WindowPlace> savedPlace(const SettingsStore& settings) {
    const auto whole = [&](const QString& key) -> std::optional<int> {
        const std::optional<double> value = settings.real(key);
        if (!value || !(std::abs(*value) < FarthestPlace))
            return std::nullopt;
        return static_cast<int>(*value);
    };
    const auto left = whole(Left);
    const auto top = whole(Top);
    const auto width = whole(Width);
    const auto height = whole(Height);
    if (!left || !top || !width || !height || *width <= 0 || *height <= 0)
        return std::nullopt;
    return WindowPlace{QRect(*left, *top, *width, *height), whole(Maximized) == 1};
}

void savePlace(const WindowPlace& place, SettingsStore& settings) {
    if (!place.isMaximized) { // the size to return to stays
        settings.setReal(Left, place.area.left());
        settings.setReal(Top, place.area.top());
        settings.setReal(Width, place.area.width());
        settings.setReal(Height, place.area.height());
    }
    settings.setReal(Maximized, place.isMaximized ? 1 : 0);
}

void rememberPlace(QWindow& window, SettingsStore& settings) {
    const WindowPlace place = firstPlace(savedPlace(settings), freeAreas());
    window.setGeometry(place.area);
    if (place.isMaximized)
        window.setWindowStates(Qt::WindowMaximized);
    const auto save = [&window, &settings] {
        const bool isFullScreen = window.windowStates().testFlag(Qt::WindowFullScreen);
        const bool isMinimized = window.windowStates().testFlag(Qt::WindowMinimized);
        const bool isMaximized = window.windowStates().testFlag(Qt::WindowMaximized);
        if (window.isVisible() && !isFullScreen && !isMinimized)
            savePlace({window.geometry(), isMaximized}, settings);
    };
    for (auto changed :
         {&QWindow::xChanged, &QWindow::yChanged, &QWindow::widthChanged, &QWindow::heightChanged})
        QObject::connect(&window, changed, &window, save);
    QObject::connect(&window, &QWindow::windowStateChanged, &window, save);
}

} // namespace quiv
