#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace quiv {

struct PixelSize {
    int width;
    int height;

    std::int64_t area() const { return std::int64_t{width} * height; }
};

// Rows from the top without gaps; a pixel is red, green, blue and alpha, the colours multiplied by
// alpha.
struct Pixels {
    PixelSize size;
    std::vector<std::uint8_t> rgba;

    explicit Pixels(PixelSize itsSize) : size(itsSize), rgba(std::size_t(itsSize.area()) * 4) {}

    std::uint8_t* row(int y) { return rgba.data() + std::size_t{4} * size.width * y; }
    const std::uint8_t* row(int y) const { return rgba.data() + std::size_t{4} * size.width * y; }
};

} // namespace quiv
