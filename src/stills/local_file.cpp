#include "stills/local_file.h"

#include "stills/no_still.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quiv {

LocalFile::LocalFile(const char* path)
    : m_descriptor(open(path, O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC)) {
    if (m_descriptor < 0)
        throw NoStill("the file cannot be opened");
    struct stat status {};
    if (fstat(m_descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
        close(m_descriptor);
        throw NoStill("not a regular file");
    }
    m_size = status.st_size;
}

LocalFile::~LocalFile() {
    close(m_descriptor);
}

std::int64_t LocalFile::read(std::int64_t position, std::span<std::uint8_t> into) const {
    for (;;) {
        const ssize_t count = pread(m_descriptor, into.data(), into.size(), position);
        if (count >= 0)
            return count;
        if (errno != EINTR)
            return -errno;
    }
}

} // namespace quiv
