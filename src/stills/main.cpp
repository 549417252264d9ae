// quiv-still FILE: writes a JPEG still of a video file to the standard output.
//
// Ends with 0, or with 1 and a line that says why there is none. Run by the application for files
// it cannot trust, so everything it may do is bounded before the file is opened.
#include "confined/confinement.h"
#include "stills/candidate_times.h"
#include "stills/frame_search.h"
#include "stills/jpeg.h"
#include "stills/local_media.h"
#include "stills/no_still.h"
#include "stills/upright_picture.h"

#include <cerrno>
#include <cstdio>
#include <optional>
#include <unistd.h>

namespace quiv {

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr ProcessLimits limits{
    .addressSpace = std::size_t{2} << 30, // 8K with 10 bits needs about half of it
    .processorSeconds = 20,               // three attempts of five seconds must fit in
    .niceness = 19,
};

Bytes stillAt(double time, LocalMedia& media, const Deadline& deadline) {
    const FramePointer frame = findFrame(media, time, deadline);
    return jpegOf(uprightPicture(*frame, media.video(), media.pixelAspect(*frame)));
}

// Every attempt but the first opens the file anew: a failed one may leave anything behind.
Bytes makeStill(const LocalFile& file) {
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

void write(const Bytes& still) {
    for (std::size_t written = 0; written < still.size();) {
        const ssize_t count =
            ::write(STDOUT_FILENO, still.data() + written, still.size() - written);
        if (count < 0 && errno != EINTR)
            throw NoStill("the still cannot be written");
        written += static_cast<std::size_t>(count < 0 ? 0 : count);
    }
}

} // namespace

} // namespace quiv

int main(int argc, char** argv) {
    try {
        quiv::closeInheritedDescriptors();
        if (argc != 2)
            throw quiv::NoStill("usage: quiv-still FILE");
        av_log_set_level(AV_LOG_QUIET);
        quiv::limitThisProcess(quiv::limits);
        const quiv::LocalFile file(argv[1]);
        quiv::forbidSystemCalls();
        quiv::write(quiv::makeStill(file));
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "quiv-still: %s\n", error.what());
        return 1;
    }
}
