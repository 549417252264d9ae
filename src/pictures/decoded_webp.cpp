#include "pictures/decoders.h"
#include "pictures/no_picture.h"

#include <webp/decode.h>

namespace quiv {

Pixels decodedWebP(Bytes bytes) {
    WebPDecoderConfig config;
    if (!WebPInitDecoderConfig(&config) ||
        WebPGetFeatures(bytes.data(), bytes.size(), &config.input) != VP8_STATUS_OK)
        throw NoPicture("the WebP has no header");
    if (config.input.has_animation)
        throw NoPicture("the WebP is animated");
    const PixelSize size{config.input.width, config.input.height};
    requireDecodable(size);
    Pixels pixels(size);
    config.output.colorspace = MODE_rgbA; // multiplied by alpha
    config.output.is_external_memory = 1;
    config.output.u.RGBA = {pixels.rgba.data(), 4 * size.width, pixels.rgba.size()};
    if (WebPDecode(bytes.data(), bytes.size(), &config) != VP8_STATUS_OK)
        throw NoPicture("the WebP cannot be decoded");
    return pixels;
}

} // namespace quiv
