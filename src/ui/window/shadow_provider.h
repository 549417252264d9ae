#pragma once

#include <QImage>
#include <QQuickImageProvider>

namespace quiv {

// A blurred rounded rectangle to be stretched under what floats: corners of `radius` units, faded
// out over `reach` units around it, `reach` inside of the picture's edges.
QImage shadowPicture(int radius, int reach, const QColor& colour);

// Draws shadows that any renderer can show. The address is "image://shadow/RADIUS/REACH/COLOUR"
// with the colour as hexadecimal AARRGGBB or RRGGBB. Any thread.
class ShadowProvider : public QQuickImageProvider {
public:
    ShadowProvider() : QQuickImageProvider(QQuickImageProvider::Image) {}

    QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;
};

// How much room the corners of that picture take on each side.
constexpr int shadowCorner(int radius, int reach) {
    return radius + 2 * reach;
}

} // namespace quiv
