#pragma once

#include "pictures/pixels.h"

namespace quiv {

// Smooth in both directions, whether that makes it smaller or larger.
Pixels stretched(const Pixels& picture, PixelSize size);

} // namespace quiv
