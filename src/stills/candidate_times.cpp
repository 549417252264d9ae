#include "stills/candidate_times.h"

#include <algorithm>
#include <cmath>

namespace quiv {

std::vector<double> uploadThumbnailCandidateTimes(double durationSeconds) {
    if (!std::isfinite(durationSeconds) || durationSeconds <= 1.0)
        return {0.0};
    constexpr double earliest = 0.35; // past the black frames many videos begin with
    const double latest = std::max(durationSeconds - 0.25, earliest);
    const auto at = [&](double share) {
        return std::min(std::max(share * durationSeconds, earliest), latest);
    };
    return {at(0.12), at(0.42), 0.0};
}

} // namespace quiv
