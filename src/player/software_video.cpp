#include "player/software_video.h"

#include <QQuickWindow>
#include <QSGImageNode>

namespace quiv {

SoftwareVideo::SoftwareVideo(std::shared_ptr<MpvCore> core)
    : m_frames(SoftwareFrames::start(std::move(core), Redraw(this))) {
    setFlag(ItemHasContents);
}

SoftwareVideo::~SoftwareVideo() {
    if (m_frames)
        m_frames->stop();
}

QSGNode* SoftwareVideo::updatePaintNode(QSGNode* node, UpdatePaintNodeData*) {
    auto* picture = static_cast<QSGImageNode*>(node);
    const QImage newest = m_frames ? m_frames->take() : QImage();
    if (!picture && newest.isNull())
        return nullptr;
    if (!picture) {
        picture = window()->createImageNode();
        picture->setOwnsTexture(true);
    }
    if (!newest.isNull())
        picture->setTexture(window()->createTextureFromImage(newest));
    picture->setRect(boundingRect());
    return picture;
}

void SoftwareVideo::geometryChange(const QRectF& now, const QRectF& before) {
    QQuickItem::geometryChange(now, before);
    resize();
    update();
}

void SoftwareVideo::itemChange(ItemChange change, const ItemChangeData& data) {
    QQuickItem::itemChange(change, data);
    if (change == ItemVisibleHasChanged || change == ItemSceneChange ||
        change == ItemDevicePixelRatioHasChanged)
        resize();
}

void SoftwareVideo::resize() {
    if (!m_frames)
        return;
    const double pixels = window() ? window()->effectiveDevicePixelRatio() : 1;
    m_frames->setSize(isVisible() ? (size() * pixels).toSize() : QSize());
}

} // namespace quiv
