#pragma once

#include "pictures/pixels.h"

#include <cstdint>
#include <span>

namespace quiv {

// The JPEG, PNG or WebP picture in these bytes, told by their beginning, stretched to this size.
// Only what makes up its pixels is looked at. Throws NoPicture for everything else, for a JPEG that
// is cut off, and for a picture of more pixels than any of a video needs.
Pixels pictureOf(std::span<const std::uint8_t> bytes, PixelSize size);

} // namespace quiv
