#include "pictures/decoders.h"
#include "pictures/no_picture.h"

#include <algorithm>
#include <csetjmp>
#include <memory>
#include <optional>
#include <png.h>

namespace quiv {

namespace {

constexpr std::uint8_t Opaque = 255;

// Holds what has to be released, because the library leaves by longjmp() when it fails: the
// functions that call it have no objects of their own.
class PngReader {
public:
    explicit PngReader(Bytes bytes)
        : m_rest(bytes),
          m_png(png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, &fail, &ignoreWarning)),
          m_info(png_create_info_struct(m_png)) {
        if (!m_info) {
            png_destroy_read_struct(&m_png, nullptr, nullptr);
            throw std::bad_alloc();
        }
        png_set_read_fn(m_png, this, &giveBytes);
    }
    ~PngReader() { png_destroy_read_struct(&m_png, &m_info, nullptr); }
    PngReader(const PngReader&) = delete;
    PngReader& operator=(const PngReader&) = delete;

    // Returns false if there is none.
    bool readHeader() {
        if (setjmp(png_jmpbuf(m_png)))
            return false;
        png_set_user_limits(m_png, MostPixels, MostPixels);
        // Texts, colour profiles and whatever else may be compressed and large.
        png_set_keep_unknown_chunks(m_png, PNG_HANDLE_CHUNK_NEVER, nullptr, -1);
        png_read_info(m_png, m_info);
        png_set_expand(m_png); // of any kind to 8 bits of RGBA
        png_set_scale_16(m_png);
        png_set_gray_to_rgb(m_png);
        png_set_add_alpha(m_png, Opaque, PNG_FILLER_AFTER);
        m_passes = png_set_interlace_handling(m_png);
        png_read_update_info(m_png, m_info);
        return png_get_rowbytes(m_png, m_info) ==
               std::size_t{4} * png_get_image_width(m_png, m_info);
    }

    PixelSize size() const {
        return {int(png_get_image_width(m_png, m_info)), int(png_get_image_height(m_png, m_info))};
    }

    // Returns false if some are missing or broken.
    bool readPixels(Pixels& into) {
        if (setjmp(png_jmpbuf(m_png)))
            return false;
        for (int pass = 0; pass < m_passes; ++pass) {
            for (int y = 0; y < into.size.height; ++y)
                png_read_row(m_png, into.row(y), nullptr);
        }
        return true;
    }

private:
    // Says nothing, unlike the library's own.
    [[noreturn]] static void fail(png_structp png, png_const_charp) { png_longjmp(png, 1); }
    static void ignoreWarning(png_structp, png_const_charp) {}
    static void giveBytes(png_structp png, png_bytep into, std::size_t count) {
        auto& rest = static_cast<PngReader*>(png_get_io_ptr(png))->m_rest;
        if (count > rest.size())
            png_error(png, "cut off");
        std::copy_n(rest.begin(), count, into);
        rest = rest.subspan(count);
    }

    Bytes m_rest;
    png_structp m_png;
    png_infop m_info;
    int m_passes = 1;
};

void multiplyByAlpha(Pixels& pixels) {
    const std::uint8_t* const end = pixels.rgba.data() + pixels.rgba.size();
    for (std::uint8_t* pixel = pixels.rgba.data(); pixel < end; pixel += 4) {
        const int alpha = pixel[3];
        if (alpha == Opaque)
            continue;
        for (int colour = 0; colour < 3; ++colour)
            pixel[colour] =
                static_cast<std::uint8_t>((pixel[colour] * alpha + Opaque / 2) / Opaque);
    }
}

} // namespace

Pixels decodedPng(Bytes bytes) {
    PngReader reader(bytes);
    if (!reader.readHeader())
        throw NoPicture("the PNG has no header");
    requireDecodable(reader.size());
    Pixels pixels(reader.size());
    if (!reader.readPixels(pixels))
        throw NoPicture("the PNG cannot be decoded");
    multiplyByAlpha(pixels);
    return pixels;
}

} // namespace quiv
