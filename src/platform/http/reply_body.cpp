#include "platform/http/reply_body.h"

#include "platform/open_file.h"

#include <algorithm>
#include <cerrno>
#include <sys/statvfs.h>
#include <unistd.h>

namespace quiv {

namespace {

constexpr std::int64_t DiskReserve = 64 << 20;
constexpr std::int64_t DiskCheckInterval = 4 << 20; // bytes

bool writeAll(int descriptor, QByteArrayView bytes, std::int64_t offset) {
    while (!bytes.isEmpty()) {
        const auto count = ::pwrite(descriptor, bytes.data(), std::size_t(bytes.size()), offset);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return false;
        bytes = bytes.sliced(count);
        offset += count;
    }
    return true;
}

} // namespace

ReplyBody::ReplyBody(const HttpRequest& request)
    : m_file(request.replyFile), m_fileSize(request.replyFileSize), m_limit(request.replyLimit) {}

std::optional<HttpErrorCode> ReplyBody::take(bool isSuccess, QByteArrayView bytes) {
    if (!isSuccess)
        return keepBeginning(bytes);
    return m_file ? write(bytes) : keep(bytes);
}

bool ReplyBody::isCut() const {
    return m_file && m_fileSize && m_written < *m_fileSize;
}

std::optional<HttpErrorCode> ReplyBody::keep(QByteArrayView bytes) {
    if (m_bytes.size() + bytes.size() > m_limit)
        return HttpErrorCode::ReplyTooLarge;
    m_bytes.append(bytes);
    return std::nullopt;
}

// Only the first words of a refusal are of use.
std::optional<HttpErrorCode> ReplyBody::keepBeginning(QByteArrayView bytes) {
    const auto room = std::max<std::int64_t>(0, ErrorReplyLimit - m_bytes.size());
    m_bytes.append(bytes.first(std::min<std::int64_t>(room, bytes.size())));
    if (bytes.size() > room)
        return HttpErrorCode::ReplyTooLarge;
    return std::nullopt;
}

std::optional<HttpErrorCode> ReplyBody::write(QByteArrayView bytes) {
    const std::int64_t size = m_written + bytes.size();
    if (m_fileSize && size > *m_fileSize)
        return HttpErrorCode::ReplyTooLarge;
    const bool isDue = size / DiskCheckInterval != m_written / DiskCheckInterval;
    if (!m_fileSize && isDue && isDiskNearlyFull())
        return HttpErrorCode::CannotWriteFile;
    if (!writeAll(m_file->descriptor(), bytes, m_written))
        return HttpErrorCode::CannotWriteFile;
    m_written = size;
    return std::nullopt;
}

bool ReplyBody::isDiskNearlyFull() const {
    struct statvfs disk {};
    return ::fstatvfs(m_file->descriptor(), &disk) == 0 &&
           std::int64_t(disk.f_bavail * disk.f_frsize) < DiskReserve;
}

} // namespace quiv
