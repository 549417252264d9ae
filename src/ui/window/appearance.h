#pragma once

#include "ui/window/palette.h"

#include <QFont>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QtQml/qqmlregistration.h>

class QScreen;
class QWindow;

namespace quiv {

class DesktopAppearance;

// What the views take over from the desktop, kept current while it changes: colours, motion, its
// interface font and the size of a device pixel; and whether the user is at the keyboard just now,
// which shows the focus.
class Appearance : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(quiv::Palette palette READ palette NOTIFY paletteChanged)
    Q_PROPERTY(bool isMotionReduced READ isMotionReduced NOTIFY isMotionReducedChanged)
    Q_PROPERTY(double fontPixelSize READ fontPixelSize NOTIFY fontChanged)
    Q_PROPERTY(double hairline READ hairline NOTIFY hairlineChanged)
    Q_PROPERTY(bool isKeyboardInUse READ isKeyboardInUse NOTIFY isKeyboardInUseChanged)

public:
    explicit Appearance(QObject* parent = nullptr);

    // Without it the application's palette and font tell all. It must outlive this.
    void follow(const DesktopAppearance& desktop);
    void setWindow(QWindow* window);

    const Palette& palette() const { return m_palette; }
    bool isMotionReduced() const { return m_isMotionReduced; }
    double fontPixelSize() const { return m_fontPixelSize; }
    double hairline() const { return m_hairline; }

    // The interface font in another size and weight; sizes need not be whole, which QML's own font
    // function would make them.
    Q_INVOKABLE QFont textFont(double pixelSize, int weight) const;
    bool isKeyboardInUse() const { return m_isKeyboardInUse; }

    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    void paletteChanged();
    void isMotionReducedChanged();
    void fontChanged();
    void hairlineChanged();
    void isKeyboardInUseChanged();

private:
    void readDesktop();
    void readPalette();
    void readFont();
    void readDevicePixels();

    QPointer<const DesktopAppearance> m_desktop;
    QPointer<QWindow> m_window;
    PaletteChoice m_paletteChoice;
    Palette m_palette = paletteOf({});
    bool m_isMotionReduced = false;
    QString m_fontFamily;
    double m_fontPixelSize = 0;
    double m_hairline = 1;
    bool m_isKeyboardInUse = false;
};

// The thickness of a line of whole device pixels that comes nearest to one unit.
double hairlineAt(double devicePixelRatio);

} // namespace quiv
