#include "pictures/decoders.h"
#include "pictures/no_picture.h"

#include <algorithm>
#include <memory>
#include <turbojpeg.h>

namespace quiv {

namespace {

// Each costs a pass over the whole picture; encoders make about ten.
constexpr int MostScans = 64;

struct Release {
    void operator()(void* decompressor) const { tjDestroy(decompressor); }
};

// Where the next marker begins: its 0xff, as the last before its code. At the end if there is none.
std::size_t nextMarker(Bytes bytes, std::size_t from) {
    const auto isMarker = [](unsigned char code) {
        return code != 0 && code != 0xff && (code < 0xd0 || code > 0xd7); // stuffed, fill, restart
    };
    while (from + 1 < bytes.size() && !(bytes[from] == 0xff && isMarker(bytes[from + 1])))
        ++from;
    return from;
}

// A cut off picture would be decoded too, and be grey where its data are missing. Whatever follows
// the picture's own end does no harm. Pictures within segments have ends too; segments are skipped.
bool isCutOff(Bytes bytes) {
    constexpr unsigned char Start = 0xd8, End = 0xd9;
    std::size_t at = 0;
    while ((at = nextMarker(bytes, at)) + 1 < bytes.size()) {
        const unsigned char code = bytes[at + 1];
        if (code == End)
            return false;
        at += 2;
        if (code != Start && at + 1 < bytes.size())
            at += std::size_t(bytes[at]) << 8 | bytes[at + 1];
    }
    return true;
}

// At least: comments may look like one more.
int scansOf(Bytes bytes) {
    int scans = 0;
    for (std::size_t i = 0; i + 1 < bytes.size(); ++i)
        scans += bytes[i] == 0xff && bytes[i + 1] == 0xda;
    return scans;
}

// The smallest size that the decoder can give from its frequencies and that is large enough.
PixelSize sizeFor(PixelSize size, PixelSize needed) {
    int count = 0;
    const tjscalingfactor* const factors = tjGetScalingFactors(&count);
    PixelSize smallest = size;
    for (const tjscalingfactor factor : std::span(factors, std::size_t(count))) {
        const PixelSize scaled{TJSCALED(size.width, factor), TJSCALED(size.height, factor)};
        if (scaled.width >= needed.width && scaled.height >= needed.height &&
            scaled.area() < smallest.area())
            smallest = scaled;
    }
    return smallest;
}

} // namespace

Pixels decodedJpeg(Bytes bytes, PixelSize needed) {
    if (isCutOff(bytes))
        throw NoPicture("the JPEG is cut off");
    if (scansOf(bytes) > MostScans)
        throw NoPicture("the JPEG has too many scans");
    const std::unique_ptr<void, Release> decompressor(tjInitDecompress());
    PixelSize size{};
    int subsampling = 0, colours = 0;
    if (!decompressor || tjDecompressHeader3(decompressor.get(), bytes.data(), bytes.size(),
                                             &size.width, &size.height, &subsampling, &colours) < 0)
        throw NoPicture("the JPEG has no header");
    requireDecodable(size);
    Pixels pixels(sizeFor(size, needed));
    // What the library warns of, it has still decoded.
    if (tjDecompress2(decompressor.get(), bytes.data(), bytes.size(), pixels.rgba.data(),
                      pixels.size.width, 0, pixels.size.height, TJPF_RGBA, TJFLAG_LIMITSCANS) < 0 &&
        tjGetErrorCode(decompressor.get()) != TJERR_WARNING)
        throw NoPicture("the JPEG cannot be decoded");
    return pixels;
}

} // namespace quiv
