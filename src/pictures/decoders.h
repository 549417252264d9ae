#pragma once

#include "pictures/pixels.h"

#include <cstdint>
#include <span>

namespace quiv {

using Bytes = std::span<const std::uint8_t>;

// 16 million: twice what a picture of a 4K video has.
inline constexpr std::int64_t MostPixels = std::int64_t{4096} * 4096;

// Throws NoPicture unless a picture of this size may be decoded.
void requireDecodable(PixelSize size);

// Each throws NoPicture for what its library cannot decode.

// May be smaller than the picture in the bytes, but not than the size that is needed.
Pixels decodedJpeg(Bytes bytes, PixelSize needed);
Pixels decodedPng(Bytes bytes);
Pixels decodedWebP(Bytes bytes);

} // namespace quiv
