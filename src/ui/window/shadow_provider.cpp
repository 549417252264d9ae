#include "ui/window/shadow_provider.h"

#include <QColor>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace quiv {

namespace {

constexpr int MostUnits = 64; // of radius and reach

// How far a place is outside of a rounded rectangle; negative inside.
double distanceOutside(double x, double y, double halfSize, double radius) {
    const double dx = std::max(std::abs(x) - halfSize + radius, 0.0);
    const double dy = std::max(std::abs(y) - halfSize + radius, 0.0);
    return std::hypot(dx, dy) - radius;
}

// The share of a Gaussian blur's colour at a distance from a straight edge.
double fade(double distance, double reach) {
    const double deviation = reach / 2;
    return 0.5 * std::erfc(distance / (deviation * std::numbers::sqrt2));
}

} // namespace

QImage shadowPicture(int radius, int reach, const QColor& colour) {
    const int side = 2 * shadowCorner(radius, reach) + 2;
    const double middle = side / 2.0;
    // A blur rounds corners off: it falls away around them as if they were wider.
    const double corner = radius + reach / 2.0;
    QImage picture(side, side, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < side; ++y) {
        auto* line = reinterpret_cast<QRgb*>(picture.scanLine(y));
        for (int x = 0; x < side; ++x) {
            const double distance =
                distanceOutside(x + 0.5 - middle, y + 0.5 - middle, middle - reach, corner);
            const double alpha = colour.alpha() * fade(distance, reach);
            line[x] = qPremultiply(qRgba(colour.red(), colour.green(), colour.blue(),
                                         static_cast<int>(std::lround(alpha))));
        }
    }
    return picture;
}

QImage ShadowProvider::requestImage(const QString& id, QSize* size, const QSize&) {
    const auto units = [&](int index) {
        return std::clamp(id.section(u'/', index, index).toInt(), 1, MostUnits);
    };
    QImage picture = shadowPicture(units(0), units(1), QColor(u'#' + id.section(u'/', 2, 2)));
    *size = picture.size();
    return picture;
}

} // namespace quiv
