#include "pictures/stretch.h"

#include <algorithm>
#include <cmath>

namespace quiv {

namespace {

// The pixels of one line of the picture that make up one pixel of the stretched line.
struct Share {
    int first = 0;
    std::vector<float> weights{}; // their sum is 1

    int end() const { return first + int(weights.size()); }
};

// A triangle over each new pixel, as wide as the two on its sides, or as the old ones if those are
// larger.
std::vector<Share> sharesOf(int oldLength, int newLength) {
    const double step = double(oldLength) / newLength;
    const double reach = std::max(1.0, step);
    std::vector<Share> shares{std::size_t(newLength)};
    for (int i = 0; i < newLength; ++i) {
        const double middle = (i + 0.5) * step;
        Share& share = shares[std::size_t(i)];
        share.first = std::max(0, int(std::floor(middle - reach + 0.5)));
        const int end = std::min(oldLength, int(std::ceil(middle + reach - 0.5)));
        double sum = 0;
        for (int old = share.first; old < end; ++old) {
            const double weight = std::max(0.0, 1 - std::abs(old + 0.5 - middle) / reach);
            share.weights.push_back(float(weight));
            sum += weight;
        }
        for (float& weight : share.weights)
            weight /= float(sum);
    }
    return shares;
}

void stretchRow(const std::uint8_t* from, const std::vector<Share>& columns, float* to) {
    for (const Share& column : columns) {
        float sums[4] = {};
        const std::uint8_t* pixel = from + std::ptrdiff_t{4} * column.first;
        for (const float weight : column.weights) {
            for (int channel = 0; channel < 4; ++channel)
                sums[channel] += weight * *pixel++;
        }
        to = std::copy(sums, sums + 4, to);
    }
}

} // namespace

Pixels stretched(const Pixels& picture, PixelSize size) {
    if (picture.size.width == size.width && picture.size.height == size.height)
        return picture;
    const auto columns = sharesOf(picture.size.width, size.width);
    const auto rows = sharesOf(picture.size.height, size.height);
    const std::size_t rowLength = std::size_t{4} * size.width;
    std::vector<float> row(rowLength);
    std::vector<float> sums(rowLength * size.height);
    std::size_t firstOpen = 0; // the new rows before it are complete
    for (int y = 0; y < picture.size.height; ++y) {
        stretchRow(picture.row(y), columns, row.data());
        while (firstOpen < rows.size() && rows[firstOpen].end() <= y)
            ++firstOpen;
        for (std::size_t i = firstOpen; i < rows.size() && rows[i].first <= y; ++i) {
            const float weight = rows[i].weights[std::size_t(y - rows[i].first)];
            float* sum = sums.data() + i * rowLength;
            for (const float value : row)
                *sum++ += weight * value;
        }
    }
    Pixels result(size);
    std::transform(sums.begin(), sums.end(), result.rgba.begin(),
                   [](float sum) { return static_cast<std::uint8_t>(sum + 0.5f); });
    return result;
}

} // namespace quiv
