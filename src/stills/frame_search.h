#pragma once

#include "stills/ffmpeg_types.h"

namespace quiv {

class LocalMedia;
class Deadline;

// The first frame shown from this time on, in seconds, or up to a quarter of a second before it; in
// a long stretch without a place to begin at, the latest frame the deadline allowed. Throws NoStill
// when there is none, or it is damaged or encrypted.
FramePointer findFrame(LocalMedia& media, double time, const Deadline& deadline);

} // namespace quiv
