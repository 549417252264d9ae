#pragma once

#include "stills/local_file.h"

#include <cstdint>
#include <vector>

namespace quiv {

// A JPEG still of the video in this file, from the first candidate time that has one. Throws
// NoStill if none has, and std::bad_alloc.
std::vector<std::uint8_t> stillOf(const LocalFile& file);

} // namespace quiv
