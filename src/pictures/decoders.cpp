#include "pictures/decoders.h"

#include "pictures/no_picture.h"

namespace quiv {

void requireDecodable(PixelSize size) {
    if (size.width <= 0 || size.height <= 0 || size.area() > MostPixels)
        throw NoPicture("the picture has too many pixels, or none");
}

} // namespace quiv
