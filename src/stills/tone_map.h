#pragma once

#include "stills/ffmpeg_types.h"

namespace quiv {

// Whether the frame's brightness or colours go beyond what a plain picture holds.
bool needsToneMap(const AVFrame& frame);

// Makes RGB24 of RGB48 scaled from `original`: its colours in those of a plain picture, shades up
// to about white as they are, and the highlights above squeezed into what is left.
FramePointer toneMapped(const AVFrame& rgb48, const AVFrame& original);

} // namespace quiv
