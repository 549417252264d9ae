#include "ui/thumbnails/thumbnail_item.h"

#include "platform/publish.h"

#include <QQuickWindow>
#include <QSGImageNode>

#include <utility>

namespace quiv {

ThumbnailItem::ThumbnailItem(QQuickItem* parent) : QQuickItem(parent) {
    setFlag(ItemHasContents);
}

void ThumbnailItem::setStore(ThumbnailStore* store) {
    if (m_store == store)
        return;
    m_store = store;
    m_loader = store ? std::make_unique<ThumbnailLoader>(*store) : nullptr;
    if (m_loader)
        connect(m_loader.get(), &ThumbnailLoader::imageChanged, this, &ThumbnailItem::repaint);
    Q_EMIT storeChanged();
    load();
}

void ThumbnailItem::setUrl(const QUrl& url) {
    if (publish(this, m_url, url, &ThumbnailItem::urlChanged))
        load();
}

void ThumbnailItem::setCornerRadius(double radius) {
    if (publish(this, m_cornerRadius, radius, &ThumbnailItem::cornerRadiusChanged))
        load();
}

void ThumbnailItem::componentComplete() {
    QQuickItem::componentComplete();
    load();
}

void ThumbnailItem::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) {
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.size() != oldGeometry.size())
        load();
}

void ThumbnailItem::itemChange(ItemChange change, const ItemChangeData& data) {
    QQuickItem::itemChange(change, data);
    if (change == ItemSceneChange || change == ItemDevicePixelRatioHasChanged)
        load();
}

void ThumbnailItem::load() {
    if (!m_loader || !isComponentComplete() || !window())
        return;
    const double ratio = window()->effectiveDevicePixelRatio();
    m_loader->load(m_url, {(size() * ratio).toSize(), m_cornerRadius * ratio});
}

void ThumbnailItem::repaint() {
    m_isPictureNew = true;
    update();
    Q_EMIT pictureChanged();
}

QSGNode* ThumbnailItem::updatePaintNode(QSGNode* oldNode, UpdatePaintNodeData*) {
    auto* node = static_cast<QSGImageNode*>(oldNode);
    if (!hasPicture()) {
        delete node;
        return nullptr;
    }
    const bool isNew = std::exchange(m_isPictureNew, false) || !node;
    if (!node) {
        node = window()->createImageNode();
        node->setOwnsTexture(true);
        node->setFiltering(QSGTexture::Linear);
    }
    if (isNew) {
        node->setTexture(
            window()->createTextureFromImage(m_loader->image(), QQuickWindow::TextureCanUseAtlas));
    }
    node->setRect(boundingRect());
    return node;
}

} // namespace quiv
