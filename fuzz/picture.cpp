// A TV's picture, as its helper program decodes it.

#include "pictures/picture.h"
#include "fuzz/bytes.h"
#include "pictures/no_picture.h"

using namespace quiv;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        pictureOf({data, size}, PixelSize(96, 54));
    } catch (const NoPicture&) {
        // Most bytes are none.
    } catch (const std::bad_alloc&) {
        // The helper ends by it.
    }
    return 0;
}
