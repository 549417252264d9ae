#pragma once

#include "player/mpv_core.h"
#include "player/redraw.h"

#include <QImage>
#include <QSize>

#include <condition_variable>
#include <memory>
#include <mutex>

struct mpv_render_context;

namespace quiv {

// Draws a player's pictures without OpenGL, on a thread of its own, which ends soon after stop():
// scaling takes milliseconds that the window does not have.
class SoftwareFrames {
public:
    // Starts drawing; nullptr if the player cannot be drawn. Main thread.
    static std::shared_ptr<SoftwareFrames> start(std::shared_ptr<MpvCore> core,
                                                 const Redraw& redraw);

    void stop();
    // In pixels; an empty size draws nothing.
    void setSize(const QSize& size);
    // The newest picture, once.
    QImage take();

private:
    SoftwareFrames(mpv_render_context* context, const Redraw& redraw);
    void run();
    void draw(const QSize& size);
    static void frameIsDue(void* frames);

    mpv_render_context* const m_context;
    const Redraw m_redraw;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_isStopped = false;
    bool m_isDue = false;
    bool m_isResized = false;
    QSize m_size;
    QImage m_newest;
};

} // namespace quiv
