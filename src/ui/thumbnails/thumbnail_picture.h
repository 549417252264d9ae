#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>

namespace quiv {

// How a picture is shown: in physical pixels of the display.
struct ThumbnailShape {
    QSize size;
    double cornerRadius = 0;

    bool operator==(const ThumbnailShape&) const = default;
};

// The picture stretched to its shape. A null image for what is no whole JPEG, PNG, WebP, GIF or BMP
// picture, or one of more pixels than any picture of this size needs: whatever comes, it costs
// bounded memory. Any thread.
QImage decodedThumbnail(const QByteArray& bytes, const ThumbnailShape& shape);

} // namespace quiv
