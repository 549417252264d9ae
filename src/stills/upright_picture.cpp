#include "stills/upright_picture.h"

#include "stills/no_still.h"
#include "stills/tone_map.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <cstring>

namespace quiv {

namespace {

struct Size {
    int width;
    int height;
};

// The nearest of the eight ways to lay a picture on its axes.
struct Orientation {
    bool isTransposed = false; // columns become rows, before mirroring
    bool isMirroredAcross = false;
    bool isMirroredDown = false;
};

// Nine numbers that map (x, y) to (ax + cy, bx + dy); a, b, c and d are at 0, 1, 3 and 4.
Orientation orientationOf(const std::array<std::int32_t, 9>& matrix) {
    const double a = matrix[0], b = matrix[1], c = matrix[3], d = matrix[4];
    if (std::abs(b) + std::abs(c) > std::abs(a) + std::abs(d))
        return {true, c < 0, b < 0};
    return {false, a < 0, d < 0};
}

// What the container says counts, as for every player; the video's own word only without it.
Orientation orientationOf(const AVFrame& frame, const AVStream& video) {
    std::array<std::int32_t, 9> matrix{};
    std::size_t size = 0;
    const std::uint8_t* bytes = av_stream_get_side_data(&video, AV_PKT_DATA_DISPLAYMATRIX, &size);
    if (!bytes) {
        const auto* const own = av_frame_get_side_data(&frame, AV_FRAME_DATA_DISPLAYMATRIX);
        if (!own)
            return {};
        bytes = own->data;
        size = own->size;
    }
    if (size < sizeof matrix)
        return {};
    std::memcpy(matrix.data(), bytes, sizeof matrix);
    return orientationOf(matrix);
}

// Before it is turned. Heights stay, widths follow the shape of the pixels.
Size scaledSize(const AVFrame& frame, AVRational pixelAspect, bool isTransposed) {
    double aspect = pixelAspect.num > 0 && pixelAspect.den > 0 ? av_q2d(pixelAspect) : 1.0;
    if (aspect < 0.1 || aspect > 10) // no such film; a broken number
        aspect = 1.0;
    const double width = frame.width * aspect;
    const double height = frame.height;
    const double widest = isTransposed ? StillHeight : StillWidth;
    const double highest = isTransposed ? StillWidth : StillHeight;
    const double scale = std::min({1.0, widest / width, highest / height});
    return {std::max(1, static_cast<int>(std::lround(width * scale))),
            std::max(1, static_cast<int>(std::lround(height * scale)))};
}

// How colours without a word about them are coded: by habit, in high definition otherwise.
int colourMatrixOf(const AVFrame& frame) {
    if (frame.colorspace != AVCOL_SPC_UNSPECIFIED && frame.colorspace != AVCOL_SPC_RGB)
        return frame.colorspace;
    return frame.height > 576 ? SWS_CS_ITU709 : SWS_CS_ITU601;
}

bool usesAllValues(const AVFrame& frame) {
    switch (frame.format) {
    case AV_PIX_FMT_YUVJ411P:
    case AV_PIX_FMT_YUVJ420P:
    case AV_PIX_FMT_YUVJ422P:
    case AV_PIX_FMT_YUVJ440P:
    case AV_PIX_FMT_YUVJ444P:
        return true;
    default:
        return frame.color_range == AVCOL_RANGE_JPEG;
    }
}

FramePointer scaled(const AVFrame& frame, Size size, AVPixelFormat format) {
    constexpr int flags = SWS_BICUBIC | SWS_ACCURATE_RND | SWS_FULL_CHR_H_INT;
    constexpr int neutral = 1 << 16;
    const ScalerPointer scaler(
        sws_getContext(frame.width, frame.height, static_cast<AVPixelFormat>(frame.format),
                       size.width, size.height, format, flags, nullptr, nullptr, nullptr));
    if (!scaler)
        throw NoStill("the frame's format is unknown");
    // Refused where neither side is YUV, and then not needed.
    sws_setColorspaceDetails(scaler.get(), sws_getCoefficients(colourMatrixOf(frame)),
                             usesAllValues(frame), sws_getCoefficients(SWS_CS_DEFAULT), 1, 0,
                             neutral, neutral);
    FramePointer result(orOutOfMemory(av_frame_alloc()));
    result->width = size.width;
    result->height = size.height;
    result->format = format;
    if (av_frame_get_buffer(result.get(), 0) < 0)
        throw std::bad_alloc();
    if (sws_scale(scaler.get(), frame.data, frame.linesize, 0, frame.height, result->data,
                  result->linesize) < size.height)
        throw NoStill("the frame cannot be scaled");
    return result;
}

Picture turned(const AVFrame& rgb, Orientation orientation) {
    Picture picture(orientation.isTransposed ? rgb.height : rgb.width,
                    orientation.isTransposed ? rgb.width : rgb.height);
    auto* to = picture.rgb.data();
    for (int y = 0; y < picture.height; ++y) {
        const int down = orientation.isMirroredDown ? picture.height - 1 - y : y;
        for (int x = 0; x < picture.width; ++x, to += 3) {
            const int across = orientation.isMirroredAcross ? picture.width - 1 - x : x;
            const int row = orientation.isTransposed ? across : down;
            const int column = orientation.isTransposed ? down : across;
            std::memcpy(to,
                        rgb.data[0] + std::ptrdiff_t{row} * rgb.linesize[0] +
                            std::ptrdiff_t{column} * 3,
                        3);
        }
    }
    return picture;
}

} // namespace

Picture uprightPicture(const AVFrame& frame, const AVStream& video, AVRational pixelAspect) {
    const Orientation orientation = orientationOf(frame, video);
    const Size size = scaledSize(frame, pixelAspect, orientation.isTransposed);
    if (!needsToneMap(frame))
        return turned(*scaled(frame, size, AV_PIX_FMT_RGB24), orientation);
    return turned(*toneMapped(*scaled(frame, size, AV_PIX_FMT_RGB48), frame), orientation);
}

} // namespace quiv
