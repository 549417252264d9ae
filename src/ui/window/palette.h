#pragma once

#include <QColor>
#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <optional>

namespace quiv {

// The window's colours. Translucent ones are for any ground of the window.
struct Palette {
    Q_GADGET
    QML_VALUE_TYPE(themePalette)
    Q_PROPERTY(QColor window MEMBER window CONSTANT)
    Q_PROPERTY(QColor sidebar MEMBER sidebar CONSTANT)
    Q_PROPERTY(QColor surface MEMBER surface CONSTANT)
    Q_PROPERTY(QColor surfaceHovered MEMBER surfaceHovered CONSTANT)
    Q_PROPERTY(QColor surfacePressed MEMBER surfacePressed CONSTANT)
    Q_PROPERTY(QColor separator MEMBER separator CONSTANT)
    Q_PROPERTY(QColor controlBorder MEMBER controlBorder CONSTANT)
    Q_PROPERTY(QColor fieldBorder MEMBER fieldBorder CONSTANT)
    Q_PROPERTY(QColor tileOutline MEMBER tileOutline CONSTANT)
    Q_PROPERTY(QColor rowHovered MEMBER rowHovered CONSTANT)
    Q_PROPERTY(QColor scrollThumb MEMBER scrollThumb CONSTANT)
    Q_PROPERTY(QColor scrollThumbActive MEMBER scrollThumbActive CONSTANT)
    Q_PROPERTY(QColor scrim MEMBER scrim CONSTANT)
    Q_PROPERTY(QColor shadow MEMBER shadow CONSTANT)
    Q_PROPERTY(QColor primaryText MEMBER primaryText CONSTANT)
    Q_PROPERTY(QColor secondaryText MEMBER secondaryText CONSTANT)
    Q_PROPERTY(QColor tertiaryText MEMBER tertiaryText CONSTANT)
    Q_PROPERTY(QColor accent MEMBER accent CONSTANT)
    Q_PROPERTY(QColor accentHovered MEMBER accentHovered CONSTANT)
    Q_PROPERTY(QColor accentPressed MEMBER accentPressed CONSTANT)
    Q_PROPERTY(QColor accentInk MEMBER accentInk CONSTANT)
    Q_PROPERTY(QColor accentText MEMBER accentText CONSTANT)
    Q_PROPERTY(QColor accentFill MEMBER accentFill CONSTANT)
    Q_PROPERTY(QColor accentFillHovered MEMBER accentFillHovered CONSTANT)
    Q_PROPERTY(QColor dropFill MEMBER dropFill CONSTANT)
    Q_PROPERTY(QColor dropOutline MEMBER dropOutline CONSTANT)
    Q_PROPERTY(QColor notReady MEMBER notReady CONSTANT)
    Q_PROPERTY(QColor track MEMBER track CONSTANT)
    Q_PROPERTY(QColor knob MEMBER knob CONSTANT)
    Q_PROPERTY(QColor knobBorder MEMBER knobBorder CONSTANT)
    Q_PROPERTY(QColor disabledFill MEMBER disabledFill CONSTANT)
    Q_PROPERTY(QColor destructive MEMBER destructive CONSTANT)
    Q_PROPERTY(QColor selectedTv MEMBER selectedTv CONSTANT)
    Q_PROPERTY(QColor stripFill MEMBER stripFill CONSTANT)
    Q_PROPERTY(QColor stripLabel MEMBER stripLabel CONSTANT)
    Q_PROPERTY(QColor progressFill MEMBER progressFill CONSTANT)
    Q_PROPERTY(QColor placeholderFill MEMBER placeholderFill CONSTANT)
    Q_PROPERTY(QColor greenText MEMBER greenText CONSTANT)
    Q_PROPERTY(QColor greenFill MEMBER greenFill CONSTANT)
    Q_PROPERTY(QColor usbFill MEMBER usbFill CONSTANT)
    Q_PROPERTY(QColor amberText MEMBER amberText CONSTANT)
    Q_PROPERTY(QColor amberFill MEMBER amberFill CONSTANT)
    Q_PROPERTY(QColor neutralFill MEMBER neutralFill CONSTANT)
    Q_PROPERTY(QColor internalFill MEMBER internalFill CONSTANT)

public:
    QColor window;
    QColor sidebar;
    QColor surface;
    QColor surfaceHovered;
    QColor surfacePressed;
    QColor separator;
    QColor controlBorder;
    QColor fieldBorder; // what nothing but its border shows
    QColor tileOutline;
    QColor rowHovered;
    QColor scrollThumb;
    QColor scrollThumbActive;
    QColor scrim;
    QColor shadow;
    QColor primaryText;
    QColor secondaryText;
    QColor tertiaryText;
    QColor accent;
    QColor accentHovered;
    QColor accentPressed;
    QColor accentInk;  // on the accent colour
    QColor accentText; // the accent colour as a text, on its own tint, too
    QColor accentFill;
    QColor accentFillHovered;
    QColor dropFill;
    QColor dropOutline;
    QColor notReady;
    QColor track;
    QColor knob;
    QColor knobBorder;
    QColor disabledFill;
    QColor destructive;
    QColor selectedTv;
    QColor stripFill;
    QColor stripLabel;
    QColor progressFill;
    QColor placeholderFill;
    QColor greenText; // of badges, as those below
    QColor greenFill;
    QColor usbFill;
    QColor amberText;
    QColor amberFill;
    QColor neutralFill;
    QColor internalFill;

    bool operator==(const Palette&) const = default;
};

struct PaletteChoice {
    bool isDark = false;
    bool isHighContrast = false;
    std::optional<QColor> accent; // the desktop's

    bool operator==(const PaletteChoice&) const = default;
};

// Every text has the contrast of WCAG 2.1 AA on every ground that it stands on, whatever the accent
// colour; AAA with high contrast.
Palette paletteOf(const PaletteChoice& choice);

} // namespace quiv
