#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace quiv {

// A picture as it is to be seen: 8-bit sRGB, rows from the top without gaps.
struct Picture {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> rgb; // 3 x width x height

    Picture(int itsWidth, int itsHeight)
        : width(itsWidth), height(itsHeight), rgb(std::size_t{3} * itsWidth * itsHeight) {}
};

} // namespace quiv
