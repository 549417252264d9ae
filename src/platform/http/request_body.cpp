#include "platform/http/request_body.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <unistd.h>

namespace quiv {

RequestBody::RequestBody(QByteArray bytes, std::shared_ptr<const OpenFile> file)
    : m_bytes(std::move(bytes)),
      m_file(std::move(file)),
      m_size(m_file ? m_file->stamp().value_or(FileStamp()).sizeBytes : m_bytes.size()) {}

std::optional<std::int64_t> RequestBody::read(char* buffer, std::int64_t capacity) {
    const std::int64_t wanted = std::min(capacity, m_size - m_offset);
    if (wanted <= 0)
        return 0;
    std::int64_t count = wanted;
    if (m_file) {
        do {
            count = ::pread(m_file->descriptor(), buffer, std::size_t(wanted), m_offset);
        } while (count < 0 && errno == EINTR);
    } else {
        std::memcpy(buffer, m_bytes.constData() + m_offset, std::size_t(wanted));
    }
    if (count <= 0)
        return std::nullopt;
    m_offset += count;
    return count;
}

} // namespace quiv
