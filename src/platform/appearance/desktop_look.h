#pragma once

#include <QMap>
#include <QString>
#include <QVariantMap>

#include <array>
#include <optional>

namespace quiv {

// What the desktop says about looks. What it does not say has its default here.
struct DesktopLook {
    enum class Scheme { Unstated, Dark, Light };

    Scheme scheme = Scheme::Unstated;
    std::optional<std::array<double, 3>> accent; // red, green, blue, 0 to 1
    bool isHighContrast = false;
    bool isMotionReduced = false;
    QString fontFamily;    // empty if unstated
    double fontPoints = 0; // 0 if unstated
    double textScale = 1;

    bool operator==(const DesktopLook&) const = default;
};

// By namespace, then by key, as the desktop portal names them.
using DesktopSettings = QMap<QString, QVariantMap>;

// What the settings of the portal, of GNOME and of KDE say. A colour is a list of three numbers.
DesktopLook desktopLook(const DesktopSettings& settings);

} // namespace quiv
