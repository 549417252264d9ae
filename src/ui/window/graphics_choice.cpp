#include "ui/window/graphics_choice.h"

#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QQuickWindow>

#include <algorithm>
#include <array>

namespace quiv {

namespace {

// Returns an empty name if there is no OpenGL.
QByteArray openGlRendererName() {
    QOpenGLContext context;
    QOffscreenSurface surface;
    surface.create();
    if (!context.create() || !context.makeCurrent(&surface))
        return {};
    const auto* name = context.functions()->glGetString(GL_RENDERER);
    QByteArray renderer(reinterpret_cast<const char*>(name));
    context.doneCurrent();
    return renderer;
}

} // namespace

bool isSoftwareRasteriser(const QByteArray& rendererName) {
    constexpr std::array<const char*, 4> names{"llvmpipe", "softpipe", "swrast",
                                               "software rasterizer"};
    const QByteArray lowered = rendererName.toLower();
    return std::any_of(names.begin(), names.end(),
                       [&](const char* name) { return lowered.contains(name); });
}

void chooseGraphics() {
    const QByteArray renderer = openGlRendererName();
    const bool useOpenGl = !renderer.isEmpty() && !isSoftwareRasteriser(renderer);
    QQuickWindow::setGraphicsApi(useOpenGl ? QSGRendererInterface::OpenGL
                                           : QSGRendererInterface::Software);
}

} // namespace quiv
