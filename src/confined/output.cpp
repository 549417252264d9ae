#include "confined/output.h"

#include <cerrno>
#include <system_error>
#include <unistd.h>

namespace quiv {

void writeOutput(std::span<const std::uint8_t> bytes) {
    while (!bytes.empty()) {
        const ssize_t count = write(STDOUT_FILENO, bytes.data(), bytes.size());
        if (count >= 0)
            bytes = bytes.subspan(static_cast<std::size_t>(count));
        else if (errno != EINTR)
            throw std::system_error(errno, std::generic_category(), "writing");
    }
}

} // namespace quiv
