#include "ui/window/icon_provider.h"

#include <QColor>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

constexpr int GridUnits = 24; // the size that the symbols are drawn on

// A function of its own, so that painting has ended before the image is handed on.
void draw(QImage& image, QSvgRenderer& renderer) {
    image.fill(Qt::transparent);
    QPainter painter(&image);
    renderer.render(&painter, QRectF(image.rect()));
}

void tint(QImage& image, const QColor& colour) {
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), colour);
}

} // namespace

QImage renderedIcon(const QString& name, const QSize& size) {
    QSvgRenderer renderer(u":/icons/"_s + name + u".svg"_s);
    if (!renderer.isValid())
        return {};
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    draw(image, renderer);
    return image;
}

IconProvider::IconProvider() : QQuickImageProvider(QQuickImageProvider::Image) {}

QImage IconProvider::requestImage(const QString& id, QSize* size, const QSize& requestedSize) {
    const QString name = id.section(u'/', 0, 0);
    const QString colour = id.section(u'/', 1);
    const QSize drawn = requestedSize.isEmpty() ? QSize(GridUnits, GridUnits) : requestedSize;
    QImage image = renderedIcon(name, drawn);
    if (!colour.isEmpty() && !image.isNull())
        tint(image, QColor(u'#' + colour));
    *size = image.size();
    return image;
}

} // namespace quiv
