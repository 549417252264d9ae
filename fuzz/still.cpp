// A local video, as the helper program for stills decodes it.

#include "stills/still.h"
#include "fuzz/bytes.h"
#include "stills/no_still.h"

#include <cstdlib>
#include <new>
#include <string>
#include <sys/mman.h>
#include <unistd.h>

using namespace quiv;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const int memory = ::memfd_create("video", MFD_CLOEXEC);
    if (memory < 0 || ::write(memory, data, size) != ssize_t(size))
        std::abort();
    try {
        const LocalFile file(("/proc/self/fd/" + std::to_string(memory)).c_str());
        stillOf(file);
    } catch (const NoStill&) {
        // Most bytes are no video.
    } catch (const std::bad_alloc&) {
        // The helper ends by it.
    }
    ::close(memory);
    return 0;
}
