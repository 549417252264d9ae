#include "player/gl_video.h"

#include "player/redraw.h"

#include <QGuiApplication>
#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <QQuickOpenGLUtils>

#include <array>
#include <mpv/render_gl.h>

namespace quiv {

namespace {

void* functionNamed(void*, const char* name) {
    return reinterpret_cast<void*>(QOpenGLContext::currentContext()->getProcAddress(name));
}

// What hardware decoders want to know; nullptr where there is no such display.
void* x11Display() {
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 ? x11->display() : nullptr;
}

mpv_render_context* makeContext(mpv_handle* player) {
    mpv_opengl_init_params gl{functionNamed, nullptr};
    void* const display = x11Display();
    std::array parameters{
        mpv_render_param{MPV_RENDER_PARAM_API_TYPE, const_cast<char*>(MPV_RENDER_API_TYPE_OPENGL)},
        mpv_render_param{MPV_RENDER_PARAM_OPENGL_INIT_PARAMS, &gl},
        display ? mpv_render_param{MPV_RENDER_PARAM_X11_DISPLAY, display} : mpv_render_param{},
        mpv_render_param{}};
    mpv_render_context* context = nullptr;
    return mpv_render_context_create(&context, player, parameters.data()) < 0 ? nullptr : context;
}

// Lives on the thread that draws; calls nothing of libmpv but what is made for that.
class GlRenderer final : public QQuickFramebufferObject::Renderer {
public:
    GlRenderer(std::shared_ptr<MpvCore> core, const Redraw& redraw)
        : m_core(std::move(core)), m_redraw(redraw), m_context(makeContext(m_core->handle())) {
        if (m_context)
            mpv_render_context_set_update_callback(m_context, &GlRenderer::frameIsDue, this);
    }
    ~GlRenderer() override {
        if (!m_context)
            return;
        mpv_render_context_set_update_callback(m_context, nullptr, nullptr);
        mpv_render_context_free(m_context);
    }

    bool isReady() const { return m_context != nullptr; }

    void render() override {
        if (!m_context)
            return;
        mpv_render_context_update(m_context);
        const QOpenGLFramebufferObject* target = framebufferObject();
        mpv_opengl_fbo fbo{static_cast<int>(target->handle()), target->width(), target->height(),
                           0};
        int flips = 0;
        int waits = 0;
        std::array parameters{mpv_render_param{MPV_RENDER_PARAM_OPENGL_FBO, &fbo},
                              mpv_render_param{MPV_RENDER_PARAM_FLIP_Y, &flips},
                              mpv_render_param{MPV_RENDER_PARAM_BLOCK_FOR_TARGET_TIME, &waits},
                              mpv_render_param{}};
        mpv_render_context_render(m_context, parameters.data());
        QQuickOpenGLUtils::resetOpenGLState();
    }

private:
    static void frameIsDue(void* renderer) {
        static_cast<const GlRenderer*>(renderer)->m_redraw.post();
    }

    const std::shared_ptr<MpvCore> m_core;
    const Redraw m_redraw;
    mpv_render_context* const m_context;
};

} // namespace

GlVideo::GlVideo(std::shared_ptr<MpvCore> core, std::function<void(bool)> onReady)
    : m_core(std::move(core)), m_onReady(std::move(onReady)) {}

// The main thread waits meanwhile, so that the item may be used here.
QQuickFramebufferObject::Renderer* GlVideo::createRenderer() const {
    auto* const item = const_cast<GlVideo*>(this);
    auto* const renderer = new GlRenderer(m_core, Redraw(item));
    QMetaObject::invokeMethod(
        item, [onReady = m_onReady, isReady = renderer->isReady()] { onReady(isReady); },
        Qt::QueuedConnection);
    return renderer;
}

} // namespace quiv
