#include "player/software_frames.h"

#include <array>
#include <mpv/render.h>
#include <new>
#include <thread>
#include <utility>

namespace quiv {

namespace {

constexpr std::size_t Alignment = 64; // bytes; what the scaler is fast with

mpv_render_context* makeContext(mpv_handle* player) {
    std::array parameters{
        mpv_render_param{MPV_RENDER_PARAM_API_TYPE, const_cast<char*>(MPV_RENDER_API_TYPE_SW)},
        mpv_render_param{}};
    mpv_render_context* context = nullptr;
    return mpv_render_context_create(&context, player, parameters.data()) < 0 ? nullptr : context;
}

QImage alignedImage(const QSize& size) {
    const std::size_t stride =
        (static_cast<std::size_t>(size.width()) * 4 + Alignment - 1) / Alignment * Alignment;
    auto* const bytes = static_cast<uchar*>(::operator new(
        stride* static_cast<std::size_t>(size.height()), std::align_val_t(Alignment)));
    const auto release = [](void* memory) {
        ::operator delete(memory, std::align_val_t(Alignment));
    };
    return QImage(bytes, size.width(), size.height(), static_cast<qsizetype>(stride),
                  QImage::Format_RGB32, release, bytes);
}

} // namespace

std::shared_ptr<SoftwareFrames> SoftwareFrames::start(std::shared_ptr<MpvCore> core,
                                                      const Redraw& redraw) {
    mpv_render_context* context = makeContext(core->handle());
    if (!context)
        return nullptr;
    const std::shared_ptr<SoftwareFrames> frames(new SoftwareFrames(context, redraw));
    std::thread([frames, drawn = std::move(core)] { frames->run(); }).detach();
    return frames;
}

SoftwareFrames::SoftwareFrames(mpv_render_context* context, const Redraw& redraw)
    : m_context(context), m_redraw(redraw) {
    mpv_render_context_set_update_callback(m_context, &SoftwareFrames::frameIsDue, this);
}

void SoftwareFrames::frameIsDue(void* frames) {
    auto& self = *static_cast<SoftwareFrames*>(frames);
    const std::scoped_lock lock(self.m_mutex);
    self.m_isDue = true;
    self.m_changed.notify_all();
}

void SoftwareFrames::stop() {
    const std::scoped_lock lock(m_mutex);
    m_isStopped = true;
    m_changed.notify_all();
}

void SoftwareFrames::setSize(const QSize& size) {
    const std::scoped_lock lock(m_mutex);
    m_isResized = m_isResized || size != m_size;
    m_size = size;
    m_changed.notify_all();
}

QImage SoftwareFrames::take() {
    const std::scoped_lock lock(m_mutex);
    return std::exchange(m_newest, {});
}

void SoftwareFrames::run() {
    std::unique_lock lock(m_mutex);
    while (true) {
        m_changed.wait(lock, [this] { return m_isStopped || m_isDue || m_isResized; });
        if (m_isStopped)
            break;
        const bool isResized = std::exchange(m_isResized, false);
        m_isDue = false;
        const QSize size = m_size;
        lock.unlock();
        const auto news = mpv_render_context_update(m_context);
        if (isResized || (news & MPV_RENDER_UPDATE_FRAME) != 0)
            draw(size);
        lock.lock();
    }
    lock.unlock();
    mpv_render_context_set_update_callback(m_context, nullptr, nullptr);
    mpv_render_context_free(m_context);
}

// A picture that is not drawn still has to be taken, or the player waits for that.
void SoftwareFrames::draw(const QSize& size) {
    int isSkipped = size.isEmpty() ? 1 : 0;
    int waits = 0;
    QImage image = alignedImage(isSkipped ? QSize(1, 1) : size);
    std::array dimensions{image.width(), image.height()};
    auto stride = static_cast<std::size_t>(image.bytesPerLine());
    std::array parameters{mpv_render_param{MPV_RENDER_PARAM_SW_SIZE, dimensions.data()},
                          mpv_render_param{MPV_RENDER_PARAM_SW_FORMAT, const_cast<char*>("bgr0")},
                          mpv_render_param{MPV_RENDER_PARAM_SW_STRIDE, &stride},
                          mpv_render_param{MPV_RENDER_PARAM_SW_POINTER, image.bits()},
                          mpv_render_param{MPV_RENDER_PARAM_BLOCK_FOR_TARGET_TIME, &waits},
                          mpv_render_param{MPV_RENDER_PARAM_SKIP_RENDERING, &isSkipped},
                          mpv_render_param{}};
    if (mpv_render_context_render(m_context, parameters.data()) < 0 || isSkipped)
        return;
    {
        const std::scoped_lock lock(m_mutex);
        m_newest = std::move(image);
    }
    m_redraw.post();
}

} // namespace quiv
