#pragma once

#include <QByteArray>

namespace quiv {

// Decides how windows are drawn: by OpenGL where the machine has it, else by Qt Quick's own
// software renderer, which takes half the memory of an emulated OpenGL. Call before the first
// window.
void chooseGraphics();

// Whether an OpenGL renderer of this name computes on the processor.
bool isSoftwareRasteriser(const QByteArray& rendererName);

} // namespace quiv
