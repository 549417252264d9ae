#pragma once

#include "player/software_frames.h"

#include <QQuickItem>

namespace quiv {

// Shows a player's picture in a window that is drawn without OpenGL.
class SoftwareVideo : public QQuickItem {
public:
    explicit SoftwareVideo(std::shared_ptr<MpvCore> core);
    ~SoftwareVideo() override;

    // The player can be drawn.
    bool isReady() const { return m_frames != nullptr; }

protected:
    QSGNode* updatePaintNode(QSGNode* node, UpdatePaintNodeData*) override;
    void geometryChange(const QRectF& now, const QRectF& before) override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;

private:
    void resize();

    const std::shared_ptr<SoftwareFrames> m_frames;
};

} // namespace quiv
