#pragma once

#include "ui/thumbnails/thumbnail_loader.h"

#include <QQuickItem>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

#include <memory>

namespace quiv {

// Draws the picture of an address, if there is one, at the resolution of its display.
class ThumbnailItem : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(quiv::ThumbnailStore* store READ store WRITE setStore NOTIFY storeChanged REQUIRED)
    Q_PROPERTY(QUrl url READ url WRITE setUrl NOTIFY urlChanged REQUIRED)
    Q_PROPERTY(double cornerRadius READ cornerRadius WRITE setCornerRadius NOTIFY
                   cornerRadiusChanged REQUIRED)
    Q_PROPERTY(bool hasPicture READ hasPicture NOTIFY pictureChanged)

public:
    explicit ThumbnailItem(QQuickItem* parent = nullptr);

    ThumbnailStore* store() const { return m_store; }
    void setStore(ThumbnailStore* store);
    const QUrl& url() const { return m_url; }
    void setUrl(const QUrl& url);
    double cornerRadius() const { return m_cornerRadius; }
    void setCornerRadius(double radius);
    bool hasPicture() const { return m_loader && !m_loader->image().isNull(); }

Q_SIGNALS:
    void storeChanged();
    void urlChanged();
    void cornerRadiusChanged();
    void pictureChanged();

protected:
    void componentComplete() override;
    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;
    QSGNode* updatePaintNode(QSGNode* oldNode, UpdatePaintNodeData* data) override;

private:
    void load();
    void repaint();

    ThumbnailStore* m_store = nullptr;
    QUrl m_url;
    double m_cornerRadius = 0;
    std::unique_ptr<ThumbnailLoader> m_loader;
    bool m_isPictureNew = false; // since it was last drawn
};

} // namespace quiv
