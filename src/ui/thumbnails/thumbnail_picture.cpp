#include "ui/thumbnails/thumbnail_picture.h"

#include <QBrush>
#include <QBuffer>
#include <QImageReader>
#include <QPainter>

namespace quiv {

namespace {

// 16 million: twice what a picture of a 4K video has.
constexpr qint64 MostPixels = qint64(4096) * 4096;

bool isPictureFormat(const QByteArray& format) {
    return format == "jpeg" || format == "png" || format == "webp" || format == "gif" ||
           format == "bmp";
}

// What decoders take for a picture although its end is missing: the rest would be grey.
bool isCutOff(const QByteArray& bytes, const QByteArray& format) {
    if (format != "jpeg")
        return false;
    qsizetype end = bytes.size();
    while (end > 0 && bytes[end - 1] == '\0')
        --end;
    return !bytes.first(end).endsWith("\xff\xd9");
}

QImage read(const QByteArray& bytes, const QSize& size) {
    QBuffer buffer;
    buffer.setData(bytes);
    QImageReader reader(&buffer);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    const QByteArray format = reader.format();
    const QSize found = reader.size();
    if (!isPictureFormat(format) || found.isEmpty() ||
        qint64(found.width()) * found.height() > MostPixels || isCutOff(bytes, format))
        return {};
    const bool isTurned = reader.transformation() & QImageIOHandler::TransformationRotate90;
    reader.setScaledSize(isTurned ? size.transposed() : size);
    return reader.read();
}

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

QImage decodedThumbnail(const QByteArray& bytes, const ThumbnailShape& shape) {
    QImage picture = read(bytes, shape.size);
    if (picture.isNull())
        return {};
    if (picture.size() != shape.size)
        picture = picture.scaled(shape.size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    QImage rounded(shape.size, QImage::Format_ARGB32_Premultiplied);
    if (!rounded.isNull())
        drawRounded(rounded, picture, shape.cornerRadius);
    return rounded;
}

} // namespace quiv
