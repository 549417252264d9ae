#include "ui/window/contrast.h"

#include <algorithm>
#include <cmath>

namespace quiv {

namespace {

double linear(double channel) {
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& colour) {
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

QColor mixed(const QColor& one, const QColor& other, double share) {
    QColor part = other;
    part.setAlphaF(float(share));
    return over(part, one);
}

} // namespace

double contrastRatio(const QColor& one, const QColor& other) {
    const double a = luminance(one);
    const double b = luminance(other);
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

QColor over(const QColor& top, const QColor& ground) {
    const float share = top.alphaF();
    const auto channel = [share](int above, int below) {
        return int(std::lround(float(above) * share + float(below) * (1 - share)));
    };
    return QColor(channel(top.red(), ground.red()), channel(top.green(), ground.green()),
                  channel(top.blue(), ground.blue()));
}

QColor contrasting(const QColor& colour, const QColor& towards, const QList<QColor>& grounds,
                   double ratio) {
    constexpr int Steps = 50;
    for (int step = 0; step < Steps; ++step) {
        const QColor tried = mixed(colour, towards, double(step) / Steps);
        if (std::ranges::all_of(grounds, [&](const QColor& ground) {
                return contrastRatio(tried, ground) >= ratio;
            }))
            return tried;
    }
    return towards;
}

} // namespace quiv
