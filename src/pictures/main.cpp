// quiv-picture WIDTH HEIGHT: reads a JPEG, PNG or WebP picture from the standard input and writes
// its pixels, stretched to this size, to the standard output: rows from the top, four bytes each,
// as pixels.h has them.
//
// Ends with 0, or with 1 and a line that says why there is none. Run by the application for
// pictures it cannot trust, so everything it may do is bounded before the first byte is read.
#include "confined/confinement.h"
#include "confined/output.h"
#include "pictures/no_picture.h"
#include "pictures/picture.h"

#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <unistd.h>

namespace quiv {

namespace {

constexpr ProcessLimits limits{
    .addressSpace = std::size_t{256} << 20, .processorSeconds = 2, .niceness = 10};
constexpr std::size_t MostBytes = 2 << 20; // of a picture
constexpr std::int64_t MostPixelsAsked = 512 << 10;

int lengthOf(const char* text) {
    int length = 0;
    const char* const end = text + std::strlen(text);
    const auto [stop, error] = std::from_chars(text, end, length);
    if (error != std::errc() || stop != end || length <= 0)
        throw NoPicture("no such size");
    return length;
}

PixelSize sizeOf(int argc, char** argv) {
    if (argc != 3)
        throw NoPicture("usage: quiv-picture WIDTH HEIGHT");
    const PixelSize size{lengthOf(argv[1]), lengthOf(argv[2])};
    if (size.area() > MostPixelsAsked)
        throw NoPicture("the size is too large");
    return size;
}

std::vector<std::uint8_t> input() {
    std::vector<std::uint8_t> bytes(MostBytes + 1);
    std::size_t length = 0;
    while (length < bytes.size()) {
        const ssize_t count = read(STDIN_FILENO, bytes.data() + length, bytes.size() - length);
        if (count == 0) {
            bytes.resize(length);
            return bytes;
        }
        if (count < 0 && errno != EINTR)
            throw NoPicture("the picture cannot be read");
        length += static_cast<std::size_t>(count < 0 ? 0 : count);
    }
    throw NoPicture("the picture has too many bytes");
}

} // namespace

} // namespace quiv

int main(int argc, char** argv) {
    try {
        quiv::closeInheritedDescriptors();
        quiv::limitThisProcess(quiv::limits);
        const quiv::PixelSize size = quiv::sizeOf(argc, argv);
        quiv::forbidSystemCalls();
        quiv::writeOutput(quiv::pictureOf(quiv::input(), size).rgba);
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "quiv-picture: %s\n", error.what());
        return 1;
    }
}
