#include "ui/thumbnails/thumbnail_picture.h"

#include <QBrush>
#include <QPainter>

namespace quiv {

namespace {

// A function of its own, so that painting has ended before the image is handed on.
void drawRounded(QImage& target, const QImage& picture, double cornerRadius) {
    target.fill(Qt::transparent);
    QPainter painter(&target);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QBrush(picture));
    painter.drawRoundedRect(QRectF(target.rect()), cornerRadius, cornerRadius);
}

} // namespace

QImage roundedThumbnail(const QByteArray& pixels, const ThumbnailShape& shape) {
    const QImage picture(reinterpret_cast<const uchar*>(pixels.constData()), shape.size.width(),
                         shape.size.height(), QImage::Format_RGBA8888_Premultiplied);
    QImage rounded(shape.size, QImage::Format_ARGB32_Premultiplied);
    if (!rounded.isNull())
        drawRounded(rounded, picture, shape.cornerRadius);
    return rounded;
}

} // namespace quiv
