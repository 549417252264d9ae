#include "ui/window/appearance.h"

#include "platform/appearance/desktop_appearance.h"
#include "platform/publish.h"
#include "ui/window/interface_font.h"
#include "ui/window/plain_font.h"

#include <QEvent>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QPalette>
#include <QScreen>
#include <QWindow>

#include <algorithm>
#include <cmath>

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

constexpr double PointsPerInch = 72;

bool isDark(const DesktopLook& look) {
    if (look.scheme != DesktopLook::Scheme::Unstated)
        return look.scheme == DesktopLook::Scheme::Dark;
    return QGuiApplication::palette().color(QPalette::Window).lightness() < 128;
}

std::optional<QColor> accentOf(const DesktopLook& look) {
    if (!look.accent)
        return std::nullopt;
    const auto& [red, green, blue] = *look.accent;
    return QColor::fromRgbF(float(red), float(green), float(blue));
}

// On X11 the scale of texts is part of the screen's resolution already.
DesktopLook withScaleToApply(DesktopLook look) {
    if (!QGuiApplication::platformName().startsWith(u"wayland"_s))
        look.textScale = 1;
    return look;
}

} // namespace

double hairlineAt(double devicePixelRatio) {
    const double pixels = std::max(1.0, std::ceil(devicePixelRatio - 0.5));
    return pixels / devicePixelRatio;
}

Appearance::Appearance(QObject* parent) : QObject(parent) {
    readDesktop();
    qGuiApp->installEventFilter(this);
}

void Appearance::follow(const DesktopAppearance& desktop) {
    m_desktop = &desktop;
    connect(&desktop, &DesktopAppearance::lookChanged, this, &Appearance::readDesktop);
    readDesktop();
}

void Appearance::setWindow(QWindow* window) {
    m_window = window;
    connect(window, &QWindow::screenChanged, this, &Appearance::readDevicePixels);
    readDevicePixels();
}

QFont Appearance::textFont(double pixelSize, int weight) const {
    QFont font(plainFamily(m_fontFamily, weight));
    const double pixelsPerInch = QGuiApplication::primaryScreen()->logicalDotsPerInch();
    font.setPointSizeF(pixelSize * PointsPerInch / pixelsPerInch);
    font.setWeight(static_cast<QFont::Weight>(weight));
    return font;
}

bool Appearance::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::ApplicationPaletteChange:
        readPalette();
        break;
    case QEvent::ApplicationFontChange:
        readFont();
        break;
    case QEvent::Expose: // comes with another scale of the screen
        if (watched == m_window)
            readDevicePixels();
        break;
    case QEvent::KeyPress:
        publish(this, m_isKeyboardInUse, true, &Appearance::isKeyboardInUseChanged);
        break;
    case QEvent::MouseButtonPress:
    case QEvent::TouchBegin:
        publish(this, m_isKeyboardInUse, false, &Appearance::isKeyboardInUseChanged);
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

void Appearance::readDesktop() {
    const bool isReduced = m_desktop && m_desktop->look().isMotionReduced;
    publish(this, m_isMotionReduced, isReduced, &Appearance::isMotionReducedChanged);
    readPalette();
    readFont();
}

void Appearance::readPalette() {
    const DesktopLook look = m_desktop ? m_desktop->look() : DesktopLook();
    const PaletteChoice choice{isDark(look), look.isHighContrast, accentOf(look)};
    if (std::exchange(m_paletteChoice, choice) == choice)
        return;
    m_palette = paletteOf(choice);
    Q_EMIT paletteChanged();
}

void Appearance::readFont() {
    const DesktopLook look = m_desktop ? m_desktop->look() : DesktopLook();
    const QScreen* screen = QGuiApplication::primaryScreen();
    connect(screen, &QScreen::logicalDotsPerInchChanged, this, &Appearance::readFont,
            Qt::UniqueConnection);
    InterfaceFont font = interfaceFont(withScaleToApply(look), QGuiApplication::font(),
                                       screen->logicalDotsPerInch());
    if (font.family.isEmpty() || !QFontDatabase::hasFamily(font.family))
        font.family = u"Inter"_s;
    if (font == InterfaceFont{m_fontFamily, m_fontPixelSize})
        return;
    m_fontFamily = font.family;
    m_fontPixelSize = font.pixelSize;
    Q_EMIT fontChanged();
}

void Appearance::readDevicePixels() {
    publish(this, m_hairline, hairlineAt(m_window->devicePixelRatio()),
            &Appearance::hairlineChanged);
}

} // namespace quiv
