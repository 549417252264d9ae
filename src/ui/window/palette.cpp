#include "ui/window/palette.h"

#include "ui/window/contrast.h"

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

constexpr double TextContrast = 4.5;
constexpr double HighTextContrast = 7.6; // on a button under the pointer, too
constexpr double HoverContrast = 1.17;
constexpr double PressedContrast = 1.42;

Palette lightPalette() {
    Palette colours;
    colours.window = u"#f6f7f9"_s;
    colours.sidebar = u"#eceef2"_s;
    colours.surface = u"#ffffff"_s;
    colours.separator = u"#17141821"_s;
    colours.controlBorder = u"#24141821"_s;
    colours.fieldBorder = u"#80141821"_s;
    colours.tileOutline = u"#408e8e93"_s;
    colours.rowHovered = u"#14141821"_s;
    colours.scrollThumb = u"#80141821"_s;
    colours.scrollThumbActive = u"#a0141821"_s;
    colours.scrim = u"#52141821"_s;
    colours.shadow = u"#38141821"_s;
    colours.primaryText = u"#1b1d22"_s;
    colours.secondaryText = u"#525a68"_s;
    colours.tertiaryText = u"#5a6270"_s;
    colours.accent = u"#3558e6"_s;
    colours.notReady = u"#9e7014"_s;
    colours.track = u"#1a141821"_s;
    colours.knob = u"#ffffff"_s;
    colours.knobBorder = u"#80141821"_s;
    colours.disabledFill = u"#1a141821"_s;
    colours.destructive = u"#b3261e"_s;
    colours.selectedTv = u"#188048"_s;
    colours.stripFill = u"#1fff9500"_s;
    colours.stripLabel = u"#8c330d"_s;
    colours.progressFill = u"#248e8e93"_s;
    colours.placeholderFill = u"#338e8e93"_s;
    colours.greenText = u"#084724"_s;
    colours.greenFill = u"#b3f2cc"_s;
    colours.usbFill = u"#b5edcc"_s;
    colours.amberText = u"#663305"_s;
    colours.amberFill = u"#ffdba1"_s;
    colours.neutralFill = u"#2e8e8e93"_s;
    colours.internalFill = u"#338e8e93"_s;
    return colours;
}

Palette darkPalette() {
    Palette colours;
    colours.window = u"#17181c"_s;
    colours.sidebar = u"#1e2025"_s;
    colours.surface = u"#24262c"_s;
    colours.separator = u"#17ffffff"_s;
    colours.controlBorder = u"#1fffffff"_s;
    colours.fieldBorder = u"#66ffffff"_s;
    colours.tileOutline = u"#408e8e93"_s;
    colours.rowHovered = u"#12ffffff"_s;
    colours.scrollThumb = u"#66ffffff"_s;
    colours.scrollThumbActive = u"#80ffffff"_s;
    colours.scrim = u"#80000000"_s;
    colours.shadow = u"#80000000"_s;
    colours.primaryText = u"#eceef2"_s;
    colours.secondaryText = u"#b3b9c4"_s;
    colours.tertiaryText = u"#a3a9b5"_s;
    colours.accent = u"#7d98ff"_s;
    colours.notReady = u"#e3b65c"_s;
    colours.track = u"#24ffffff"_s;
    colours.knob = u"#eceef2"_s;
    colours.knobBorder = u"#00000000"_s;
    colours.disabledFill = u"#24ffffff"_s;
    colours.destructive = u"#ff8079"_s;
    colours.selectedTv = u"#2fb36a"_s;
    colours.stripFill = u"#24ff9f0a"_s;
    colours.stripLabel = u"#ffbe85"_s;
    colours.progressFill = u"#248e8e93"_s;
    colours.placeholderFill = u"#338e8e93"_s;
    colours.greenText = u"#b9f0cd"_s;
    colours.greenFill = u"#12402a"_s;
    colours.usbFill = u"#12402a"_s;
    colours.amberText = u"#ffdfa6"_s;
    colours.amberFill = u"#4a3208"_s;
    colours.neutralFill = u"#428e8e93"_s;
    colours.internalFill = u"#428e8e93"_s;
    return colours;
}

QColor translucent(QColor colour, double share) {
    colour.setAlphaF(float(share));
    return colour;
}

// Black on white, or white on black, with a border around everything.
void raiseContrast(Palette& colours, bool isDark) {
    const QColor ink = isDark ? Qt::white : Qt::black;
    const QColor ground = isDark ? Qt::black : Qt::white;
    for (QColor* each : {&colours.window, &colours.sidebar, &colours.surface})
        *each = ground;
    for (QColor* each : {&colours.primaryText, &colours.secondaryText, &colours.tertiaryText,
                         &colours.controlBorder, &colours.fieldBorder, &colours.separator,
                         &colours.tileOutline, &colours.knobBorder})
        *each = ink;
    for (QColor* each : {&colours.scrollThumb, &colours.scrollThumbActive})
        *each = translucent(ink, 0.8);
    colours.track = translucent(ink, 0.3);
    colours.rowHovered = translucent(ink, isDark ? 0.12 : 0.08);
    for (QColor* each : {&colours.destructive, &colours.notReady, &colours.stripLabel})
        *each = contrasting(*each, ink, {over(colours.rowHovered, ground)}, HighTextContrast);
}

// Towards the ink, or away from it where there is no room.
QColor steppedFrom(const QColor& colour, const QColor& ink, double ratio) {
    const QColor step = contrasting(colour, ink, {colour}, ratio);
    if (contrastRatio(step, colour) >= ratio)
        return step;
    return contrasting(colour, ink == Qt::white ? Qt::black : Qt::white, {colour}, ratio);
}

// The grounds that texts stand on.
QList<QColor> groundsOf(const Palette& colours) {
    return {colours.window, colours.sidebar, colours.surface,
            over(colours.rowHovered, colours.window), over(colours.rowHovered, colours.surface)};
}

void deriveAccent(Palette& colours, const PaletteChoice& choice) {
    const QColor ink = choice.isDark ? Qt::white : Qt::black;
    const double wanted = choice.isHighContrast ? HighTextContrast : TextContrast;
    const QList<QColor> grounds = groundsOf(colours);
    colours.accent = contrasting(choice.accent.value_or(colours.accent), ink, grounds, wanted);
    colours.accentInk = choice.isDark ? QColor(u"#10131c"_s) : QColor(Qt::white);
    const auto stepped = [&](double ratio) {
        return steppedFrom(colours.accent, ink, ratio);
    };
    colours.accentHovered = stepped(HoverContrast);
    colours.accentPressed = stepped(PressedContrast);
    colours.accentFill = translucent(colours.accent, choice.isDark ? 0.18 : 0.12);
    colours.accentFillHovered = translucent(colours.accent, choice.isDark ? 0.34 : 0.26);
    colours.dropFill = translucent(colours.accent, 0.14);
    colours.dropOutline = translucent(colours.accent, 0.9);
    QList<QColor> tinted;
    for (const QColor& ground : grounds)
        tinted.append(over(colours.accentFill, ground));
    colours.accentText = contrasting(colours.accent, ink, tinted, wanted);
}

} // namespace

Palette paletteOf(const PaletteChoice& choice) {
    Palette colours = choice.isDark ? darkPalette() : lightPalette();
    if (choice.isHighContrast)
        raiseContrast(colours, choice.isDark);
    const QColor ink = choice.isDark ? Qt::white : Qt::black;
    colours.surfaceHovered = contrasting(colours.surface, ink, {colours.surface}, HoverContrast);
    colours.surfacePressed = contrasting(colours.surface, ink, {colours.surface}, PressedContrast);
    colours.notReady = contrasting(colours.notReady, ink, groundsOf(colours), TextContrast);
    deriveAccent(colours, choice);
    return colours;
}

} // namespace quiv
