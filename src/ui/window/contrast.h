#pragma once

#include <QColor>

namespace quiv {

// How far two opaque colours are apart in brightness, 1 to 21, as the Web Content Accessibility
// Guidelines reckon.
double contrastRatio(const QColor& one, const QColor& other);

// What is seen of a translucent colour on an opaque one.
QColor over(const QColor& top, const QColor& ground);

// The colour, mixed with as little of `towards` as gives it the contrast with every ground.
QColor contrasting(const QColor& colour, const QColor& towards, const QList<QColor>& grounds,
                   double ratio);

} // namespace quiv
