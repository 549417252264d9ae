#pragma once

#include "stills/picture.h"

#include <cstdint>
#include <vector>

namespace quiv {

// Throws NoStill when the encoder fails.
std::vector<std::uint8_t> jpegOf(const Picture& picture);

} // namespace quiv
