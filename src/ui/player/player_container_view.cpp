#include "ui/player/player_container_view.h"

#include "platform/player/player_screen.h"

namespace quiv {

void AVPlayerContainerView::setPlayer(const LocalPlayerHandle& player) {
    if (m_player == player)
        return;
    m_player = player;
    m_video.reset();
    if (const auto screen = player.screen.lock())
        m_video.reset(screen->makeVideo());
    if (m_video) {
        m_video->setParentItem(this);
        m_video->setSize(size());
    }
    Q_EMIT playerChanged();
}

void AVPlayerContainerView::geometryChange(const QRectF& now, const QRectF& before) {
    QQuickItem::geometryChange(now, before);
    if (m_video)
        m_video->setSize(now.size());
}

} // namespace quiv
