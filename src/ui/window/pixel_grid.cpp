#include "ui/window/pixel_grid.h"

#include "platform/publish.h"

#include <QQuickWindow>

#include <algorithm>
#include <cmath>

namespace quiv {

QRectF snappedArea(const QRectF& area, double devicePixelRatio) {
    const auto nearest = [devicePixelRatio](double units) {
        return std::round(units * devicePixelRatio);
    };
    const double left = nearest(area.left());
    const double top = nearest(area.top());
    const double width = std::max(1.0, nearest(area.right()) - left);
    const double height = std::max(1.0, nearest(area.bottom()) - top);
    return QRectF(left / devicePixelRatio, top / devicePixelRatio, width / devicePixelRatio,
                  height / devicePixelRatio);
}

void PixelGrid::itemChange(ItemChange change, const ItemChangeData& value) {
    QQuickItem::itemChange(change, value);
    if (change != ItemSceneChange)
        return;
    disconnect(m_beforeFrames);
    // The item moves with everything around it, which only the scene as a whole tells of.
    if (value.window)
        m_beforeFrames =
            connect(value.window, &QQuickWindow::afterAnimating, this, &PixelGrid::snap);
}

void PixelGrid::geometryChange(const QRectF& now, const QRectF& before) {
    QQuickItem::geometryChange(now, before);
    snap();
}

void PixelGrid::snap() {
    const double ratio = window() ? window()->effectiveDevicePixelRatio() : 1;
    const QRectF own(0, 0, width(), height());
    if (ratio == std::floor(ratio)) {
        publish(this, m_snapped, own, &PixelGrid::snappedChanged);
        return;
    }
    const QPointF place = mapToScene(QPointF());
    const QRectF snapped = snappedArea(own.translated(place), ratio).translated(-place);
    publish(this, m_snapped, snapped, &PixelGrid::snappedChanged);
}

} // namespace quiv
