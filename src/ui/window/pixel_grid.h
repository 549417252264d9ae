#pragma once

#include <QQuickItem>

namespace quiv {

// Tells an item where the device's pixels are, on screens whose scale is no whole number: edges
// between two pixels are blurred.
class PixelGrid : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    // The item's own area, moved to the nearest whole device pixels.
    Q_PROPERTY(QRectF snapped READ snapped NOTIFY snappedChanged)

public:
    explicit PixelGrid(QQuickItem* parent = nullptr) : QQuickItem(parent) {}

    const QRectF& snapped() const { return m_snapped; }

Q_SIGNALS:
    void snappedChanged();

protected:
    void itemChange(ItemChange change, const ItemChangeData& value) override;
    void geometryChange(const QRectF& now, const QRectF& before) override;

private:
    void snap();

    QRectF m_snapped;
    QMetaObject::Connection m_beforeFrames;
};

// The area of a scene at the nearest whole device pixels, at least one each way.
QRectF snappedArea(const QRectF& area, double devicePixelRatio);

} // namespace quiv
