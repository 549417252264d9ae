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

// The picture with its corners rounded. `pixels` is what a PictureDecoder gives for this size.
QImage roundedThumbnail(const QByteArray& pixels, const ThumbnailShape& shape);

} // namespace quiv
