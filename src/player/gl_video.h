#pragma once

#include "player/mpv_core.h"

#include <QQuickFramebufferObject>

#include <functional>

namespace quiv {

// Shows a player's picture in a window that is drawn by OpenGL: the player draws into a texture of
// the scene, on the thread that draws the window.
class GlVideo : public QQuickFramebufferObject {
public:
    // `onReady` is called on the main thread once it is known whether the player can be drawn,
    // unless the item has gone.
    GlVideo(std::shared_ptr<MpvCore> core, std::function<void(bool)> onReady);

    Renderer* createRenderer() const override;

private:
    const std::shared_ptr<MpvCore> m_core;
    const std::function<void(bool)> m_onReady;
};

} // namespace quiv
