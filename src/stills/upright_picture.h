#pragma once

#include "stills/ffmpeg_types.h"
#include "stills/picture.h"

namespace quiv {

inline constexpr int StillWidth = 960;
inline constexpr int StillHeight = 540;

// The frame as a player shows it: turned and mirrored as its stream says, with square pixels,
// scaled down to fit into a still but never up, in plain 8-bit colours. Throws NoStill for what
// cannot be converted.
Picture uprightPicture(const AVFrame& frame, const AVStream& video, AVRational pixelAspect);

} // namespace quiv
