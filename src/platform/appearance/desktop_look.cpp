#include "platform/appearance/desktop_look.h"

#include <algorithm>

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

const auto Portal = u"org.freedesktop.appearance"_s;
const auto Gnome = u"org.gnome.desktop.interface"_s;
const auto GnomeAccess = u"org.gnome.desktop.a11y.interface"_s;
const auto KdeGeneral = u"org.kde.kdeglobals.General"_s;
const auto KdeMotion = u"org.kde.kdeglobals.KDE"_s;
constexpr double SmallestFont = 4;
constexpr double LargestFont = 72;
constexpr double LargestTextScale = 4;

DesktopLook::Scheme schemeOf(const DesktopSettings& settings) {
    const QVariant stated = settings[Portal].value(u"color-scheme"_s);
    if (stated.toInt() == 1)
        return DesktopLook::Scheme::Dark;
    if (stated.toInt() == 2)
        return DesktopLook::Scheme::Light;
    // Desktops from before the portal's setting choose another theme instead.
    const QString theme = settings[Gnome].value(u"gtk-theme"_s).toString();
    return theme.endsWith(u"-dark"_s, Qt::CaseInsensitive) ? DesktopLook::Scheme::Dark
                                                           : DesktopLook::Scheme::Unstated;
}

// A value outside of 0 to 1 says that there is no accent colour.
std::optional<std::array<double, 3>> accentOf(const QVariant& stated) {
    const QVariantList parts = stated.toList();
    if (parts.size() != 3)
        return std::nullopt;
    std::array<double, 3> accent{};
    for (std::size_t index = 0; index < accent.size(); ++index) {
        accent[index] = parts[qsizetype(index)].toDouble();
        if (!(accent[index] >= 0 && accent[index] <= 1))
            return std::nullopt;
    }
    return accent;
}

bool isMotionReducedIn(const DesktopSettings& settings) {
    const QVariant factor = settings[KdeMotion].value(u"AnimationDurationFactor"_s);
    return settings[Portal].value(u"reduced-motion"_s).toInt() == 1 ||
           !settings[Gnome].value(u"enable-animations"_s, true).toBool() ||
           (factor.isValid() && factor.toDouble() == 0);
}

void setFont(DesktopLook& look, const QString& family, double points) {
    if (family.isEmpty() || !(points >= SmallestFont && points <= LargestFont))
        return;
    look.fontFamily = family;
    look.fontPoints = points;
}

// "Cantarell 11", with words for weight and slant before the size, which are not taken over.
void readGnomeFont(DesktopLook& look, const QString& description) {
    QStringList words = description.simplified().split(u' ');
    const double points = words.takeLast().toDouble();
    while (words.size() > 1 && QStringList{u"Regular"_s, u"Medium"_s, u"Bold"_s, u"Semi-Bold"_s,
                                           u"Light"_s, u"Italic"_s}
                                   .contains(words.constLast()))
        words.removeLast();
    QString family = words.join(u' ');
    if (family.endsWith(u','))
        family.chop(1);
    setFont(look, family, points);
}

// "Noto Sans,10,-1,5,50,0,0,0,0,0"
void readKdeFont(DesktopLook& look, const QString& description) {
    const QStringList parts = description.split(u',');
    if (parts.size() > 1)
        setFont(look, parts[0].trimmed(), parts[1].toDouble());
}

} // namespace

DesktopLook desktopLook(const DesktopSettings& settings) {
    DesktopLook look;
    look.scheme = schemeOf(settings);
    look.accent = accentOf(settings[Portal].value(u"accent-color"_s));
    look.isHighContrast = settings[Portal].value(u"contrast"_s).toInt() == 1 ||
                          settings[GnomeAccess].value(u"high-contrast"_s).toBool();
    look.isMotionReduced = isMotionReducedIn(settings);
    readGnomeFont(look, settings[Gnome].value(u"font-name"_s).toString());
    readKdeFont(look, settings[KdeGeneral].value(u"font"_s).toString());
    const double scale = settings[Gnome].value(u"text-scaling-factor"_s, 1.0).toDouble();
    look.textScale = scale > 0 ? std::clamp(scale, 1 / LargestTextScale, LargestTextScale) : 1;
    return look;
}

} // namespace quiv
