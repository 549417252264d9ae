#pragma once

#include <vector>

namespace quiv {

// Where in a video of this length to look for a still, in seconds, best first. The length may be
// anything, also not a number.
std::vector<double> uploadThumbnailCandidateTimes(double durationSeconds);

} // namespace quiv
