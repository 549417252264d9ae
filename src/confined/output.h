#pragma once

#include <cstdint>
#include <span>

namespace quiv {

// Writes all of it to the standard output; throws std::system_error if that fails.
void writeOutput(std::span<const std::uint8_t> bytes);

} // namespace quiv
