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

// Returns the picture stretched to its shape, or a null image if the bytes are no whole JPEG, PNG,
// WebP, GIF or BMP picture, or one of more pixels than any picture of this size needs: whatever
// comes, it costs bounded memory. May be called on any thread.
QImage decodedThumbnail(const QByteArray& bytes, const ThumbnailShape& shape);

} // namespace quiv
