#pragma once

#include "platform/open_file.h"

#include <QByteArray>

#include <cstdint>
#include <memory>
#include <optional>

namespace quiv {

// What a request sends after its headers: an open file, or bytes in memory.
class RequestBody {
public:
    RequestBody(QByteArray bytes, std::shared_ptr<const OpenFile> file);

    std::int64_t size() const { return m_size; }
    // Copies the next bytes and returns their count, which is 0 at the end. Returns nullopt if the
    // file cannot be read or has become shorter.
    std::optional<std::int64_t> read(char* buffer, std::int64_t capacity);
    void rewind(std::int64_t offset) { m_offset = offset; }

private:
    QByteArray m_bytes;
    std::shared_ptr<const OpenFile> m_file; // nullptr if the body is m_bytes
    std::int64_t m_size;
    std::int64_t m_offset = 0;
};

} // namespace quiv
