#include "platform/http/request_body.h"

#include <algorithm>
#include <cstring>

namespace quiv {

RequestBody::RequestBody(QByteArray bytes, std::shared_ptr<const OpenFile> file)
    : m_bytes(std::move(bytes)),
      m_file(std::move(file)),
      m_size(m_file ? m_file->openedStamp().sizeBytes : m_bytes.size()) {}

void RequestBody::open(std::function<void()> onReady) {
    if (m_file)
        m_reader.emplace(m_file, m_size, std::move(onReady));
}

FileReader::Taken RequestBody::read(std::span<char> target) {
    if (m_reader)
        return m_reader->take(target);
    const auto count = std::min(target.size(), std::size_t(m_size - m_offset));
    std::memcpy(target.data(), m_bytes.constData() + m_offset, count);
    m_offset += std::int64_t(count);
    return {FileReader::Taken::Kind::Bytes, count};
}

void RequestBody::rewind(std::int64_t offset) {
    m_offset = offset;
    if (m_reader)
        m_reader->seek(offset);
}

} // namespace quiv
