#include "pictures/picture.h"

#include "pictures/decoders.h"
#include "pictures/no_picture.h"
#include "pictures/stretch.h"

#include <algorithm>
#include <string_view>

namespace quiv {

namespace {

using namespace std::string_view_literals;

bool hasAt(Bytes bytes, std::size_t place, std::string_view text) {
    return bytes.size() >= place + text.size() &&
           std::equal(text.begin(), text.end(), bytes.begin() + place,
                      [](char a, std::uint8_t b) { return static_cast<std::uint8_t>(a) == b; });
}

Pixels decoded(Bytes bytes, PixelSize size) {
    if (hasAt(bytes, 0, "\xff\xd8\xff"sv))
        return decodedJpeg(bytes, size);
    if (hasAt(bytes, 0, "\x89PNG\r\n\x1a\n"sv))
        return decodedPng(bytes);
    if (hasAt(bytes, 0, "RIFF"sv) && hasAt(bytes, 8, "WEBP"sv))
        return decodedWebP(bytes);
    throw NoPicture("neither JPEG nor PNG nor WebP");
}

} // namespace

Pixels pictureOf(std::span<const std::uint8_t> bytes, PixelSize size) {
    return stretched(decoded(bytes, size), size);
}

} // namespace quiv
