#include "stills/tone_map.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace quiv {

namespace {

constexpr double WhiteNits = 203;         // what HDR pictures show paper white with
constexpr double Peak = 1000 / WhiteNits; // brighter than that is all the same
constexpr double Knee = 0.6;              // highlights are squeezed from here on
constexpr double Gamma = 2.2;
constexpr int LightSteps = 4096;
constexpr int ShadeSteps = 1 << 14;

// ITU-R BT.2100, perceptual quantizer.
double lightOfPerceptual(double signal) {
    const double power = std::pow(signal, 1 / 78.84375);
    const double light = std::max(power - 0.8359375, 0.0) / (18.8515625 - 18.6875 * power);
    return std::pow(light, 1 / 0.1593017578125) * 10000 / WhiteNits;
}

// ITU-R BT.2100, hybrid log-Gamma, on a display of 1000 nits.
double lightOfHybrid(double signal) {
    const double scene = signal <= 0.5
                             ? signal * signal / 3
                             : (std::exp((signal - 0.55991073) / 0.17883277) + 0.28466892) / 12;
    return std::pow(scene, 1.2) * Peak;
}

double lightOf(double signal, AVColorTransferCharacteristic transfer) {
    switch (transfer) {
    case AVCOL_TRC_SMPTE2084:
        return lightOfPerceptual(signal);
    case AVCOL_TRC_ARIB_STD_B67:
        return lightOfHybrid(signal);
    default:
        return std::pow(signal, Gamma);
    }
}

// Light for signals, 1 is white.
std::vector<float> lightTable(AVColorTransferCharacteristic transfer) {
    std::vector<float> table(LightSteps);
    for (int i = 0; i < LightSteps; ++i)
        table[i] = static_cast<float>(lightOf(i / (LightSteps - 1.0), transfer));
    return table;
}

// 8-bit shades for light up to white.
std::vector<std::uint8_t> shadeTable() {
    std::vector<std::uint8_t> table(ShadeSteps);
    for (int i = 0; i < ShadeSteps; ++i)
        table[i] = static_cast<std::uint8_t>(
            std::lround(255 * std::pow(i / (ShadeSteps - 1.0), 1 / Gamma)));
    return table;
}

struct Light {
    float red, green, blue;
};

Light fromWidePrimaries(Light wide) {
    const auto [r, g, b] = wide;
    return {std::max(1.6605f * r - 0.5876f * g - 0.0728f * b, 0.0f),
            std::max(-0.1246f * r + 1.1329f * g - 0.0083f * b, 0.0f),
            std::max(-0.0182f * r - 0.1006f * g + 1.1187f * b, 0.0f)};
}

// All three by the same factor, which keeps the hue.
Light squeezed(Light light) {
    const float brightest = std::max({light.red, light.green, light.blue});
    if (brightest <= Knee)
        return light;
    constexpr double room = 1 - Knee;
    constexpr double limit = (Peak - Knee) / room;
    const double above = std::min((brightest - Knee) / room, limit);
    const double shown = Knee + room * above * (1 + above / (limit * limit)) / (1 + above);
    const auto factor = static_cast<float>(shown / brightest);
    return {light.red * factor, light.green * factor, light.blue * factor};
}

bool isHighRange(const AVFrame& frame) {
    return frame.color_trc == AVCOL_TRC_SMPTE2084 || frame.color_trc == AVCOL_TRC_ARIB_STD_B67;
}

} // namespace

bool needsToneMap(const AVFrame& frame) {
    return isHighRange(frame) || frame.color_primaries == AVCOL_PRI_BT2020;
}

FramePointer toneMapped(const AVFrame& rgb48, const AVFrame& original) {
    FramePointer result(orOutOfMemory(av_frame_alloc()));
    result->width = rgb48.width;
    result->height = rgb48.height;
    result->format = AV_PIX_FMT_RGB24;
    if (av_frame_get_buffer(result.get(), 0) < 0)
        throw std::bad_alloc();

    const std::vector<float> lights = lightTable(original.color_trc);
    const std::vector<std::uint8_t> shades = shadeTable();
    const bool isSqueezed = isHighRange(original);
    const bool isWide = original.color_primaries == AVCOL_PRI_BT2020;
    const auto light = [&](std::uint16_t signal) {
        return lights[signal / (65536 / LightSteps)];
    };
    const auto shade = [&](float value) {
        return shades[static_cast<int>(std::min(value, 1.0f) * (ShadeSteps - 1))];
    };
    for (int y = 0; y < rgb48.height; ++y) {
        const auto* from = reinterpret_cast<const std::uint16_t*>(
            rgb48.data[0] + std::ptrdiff_t{y} * rgb48.linesize[0]);
        auto* to = result->data[0] + std::ptrdiff_t{y} * result->linesize[0];
        for (int x = 0; x < rgb48.width; ++x, from += 3, to += 3) {
            Light pixel{light(from[0]), light(from[1]), light(from[2])};
            if (isWide)
                pixel = fromWidePrimaries(pixel);
            if (isSqueezed)
                pixel = squeezed(pixel);
            to[0] = shade(pixel.red);
            to[1] = shade(pixel.green);
            to[2] = shade(pixel.blue);
        }
    }
    return result;
}

} // namespace quiv
