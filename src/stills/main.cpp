// quiv-still FILE: writes a JPEG still of a video file to the standard output.
//
// Ends with 0, or with 1 and a line that says why there is none. Run by the application for files
// it cannot trust, so everything it may do is bounded before the first byte is read.
#include "confined/confinement.h"
#include "confined/output.h"
#include "stills/no_still.h"
#include "stills/still.h"

#include <cstdio>

extern "C" {
#include <libavutil/log.h>
}

namespace quiv {

namespace {

constexpr ProcessLimits limits{
    .addressSpace = std::size_t{2} << 30, // 8K with 10 bits needs about half of it
    .processorSeconds = 20,               // three attempts of five seconds must fit in
    .niceness = 19,
};

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
        quiv::writeOutput(quiv::stillOf(file));
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "quiv-still: %s\n", error.what());
        return 1;
    }
}
