#include "stills/jpeg.h"

#include "stills/no_still.h"

#include <memory>
#include <turbojpeg.h>

namespace quiv {

namespace {

constexpr int Quality = 82;

struct Release {
    void operator()(void* compressor) const { tjDestroy(compressor); }
    void operator()(unsigned char* buffer) const { tjFree(buffer); }
};

} // namespace

std::vector<std::uint8_t> jpegOf(const Picture& picture) {
    const std::unique_ptr<void, Release> compressor(tjInitCompress());
    unsigned char* bytes = nullptr;
    unsigned long size = 0;
    const bool isEncoded =
        compressor &&
        tjCompress2(compressor.get(), picture.rgb.data(), picture.width, 0, picture.height,
                    TJPF_RGB, &bytes, &size, TJSAMP_420, Quality, TJFLAG_ACCURATEDCT) == 0;
    const std::unique_ptr<unsigned char, Release> owner(bytes);
    if (!isEncoded || size == 0)
        throw NoStill("the picture cannot be encoded");
    return {bytes, bytes + size};
}

} // namespace quiv
