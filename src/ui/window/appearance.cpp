#include "ui/window/appearance.h"

#include "platform/publish.h"

#include <QEvent>
#include <QFontDatabase>
#include <QFontInfo>
#include <QGuiApplication>
#include <QPalette>
#include <QScreen>

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

// What a desktop without a font setting reports: a class of fonts, not a choice.
bool isUnchosenFamily(const QString& family) {
    const QString name = family.toLower().remove(u' ').remove(u'-');
    return name.isEmpty() || name == u"sans"_s || name == u"sansserif"_s;
}

constexpr int BasePixelSize = 13;
constexpr double PointsPerInch = 72;

} // namespace

Appearance::Appearance(QObject* parent) : QObject(parent) {
    readPalette();
    readFont();
    qGuiApp->installEventFilter(this);
}

QFont Appearance::textFont(double pixelSize, int weight) const {
    QFont font(m_fontFamily);
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

void Appearance::readPalette() {
    const bool isDark = QGuiApplication::palette().color(QPalette::Window).lightness() < 128;
    publish(this, m_isDark, isDark, &Appearance::isDarkChanged);
}

void Appearance::readFont() {
    const QFont font = QGuiApplication::font();
    if (isUnchosenFamily(font.family()) || !QFontDatabase::hasFamily(font.family())) {
        m_fontFamily = u"Inter"_s;
        m_fontPixelSize = BasePixelSize;
    } else {
        m_fontFamily = font.family();
        m_fontPixelSize = QFontInfo(font).pixelSize();
    }
    Q_EMIT fontChanged();
}

} // namespace quiv
