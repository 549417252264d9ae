#include "stills/still.h"

#include "stills/candidate_times.h"
#include "stills/frame_search.h"
#include "stills/jpeg.h"
#include "stills/local_media.h"
#include "stills/no_still.h"
#include "stills/upright_picture.h"

#include <optional>

namespace quiv {

namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes stillAt(double time, LocalMedia& media, const Deadline& deadline) {
    const FramePointer frame = findFrame(media, time, deadline);
    return jpegOf(uprightPicture(*frame, media.video(), media.pixelAspect(*frame)));
}

} // namespace

// Every attempt but the first opens the file anew: a failed one may leave anything behind.
std::vector<std::uint8_t> stillOf(const LocalFile& file) {
    Deadline deadline;
    std::optional<LocalMedia> media(std::in_place, file, deadline);
    std::optional<NoStill> reason;
    for (const double time : uploadThumbnailCandidateTimes(media->duration())) {
        try {
            if (reason) {
                deadline = {};
                media.emplace(file, deadline);
            }
            return stillAt(time, *media, deadline);
        } catch (const NoStill& error) {
            reason = error;
        }
    }
    throw *reason;
}

} // namespace quiv
