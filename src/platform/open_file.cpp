#include "platform/open_file.h"

#include "platform/async/threads.h"

#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quiv {

namespace {

constexpr std::int64_t NanosecondsPerSecond = 1'000'000'000;

} // namespace

OpenFile::OpenFile(int descriptor)
    : m_descriptor(descriptor), m_openedStamp(stamp().value_or(FileStamp())) {}

OpenFile::~OpenFile() {
    ::close(m_descriptor);
}

std::shared_ptr<const OpenFile> OpenFile::owning(int descriptor) {
    return {new OpenFile(descriptor), [](const OpenFile* file) {
                runOnDiskThread([file] { delete file; });
            }};
}

std::shared_ptr<const OpenFile> OpenFile::reading(const QString& path) {
    // Without O_NONBLOCK, opening a pipe would wait for its other end.
    const int descriptor =
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0)
        return nullptr;
    auto file = owning(descriptor);
    if (!file->stamp()) {
        errno = EINVAL;
        return nullptr;
    }
    return file;
}

std::optional<FileStamp> OpenFile::stamp() const {
    struct stat status {};
    if (::fstat(m_descriptor, &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;
    return FileStamp{status.st_size,
                     status.st_mtim.tv_sec * NanosecondsPerSecond + status.st_mtim.tv_nsec};
}

} // namespace quiv
