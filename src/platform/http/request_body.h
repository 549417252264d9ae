#pragma once

#include "platform/http/file_reader.h"
#include "platform/open_file.h"

#include <QByteArray>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>

namespace quiv {

// What a request sends after its headers: an open file, or bytes in memory.
class RequestBody {
public:
    RequestBody(QByteArray bytes, std::shared_ptr<const OpenFile> file);

    std::int64_t size() const { return m_size; }
    // Before the first read. `onReady` is called on another thread when it is worth reading again
    // after Pending.
    void open(std::function<void()> onReady);
    FileReader::Taken read(std::span<char> target);
    void rewind(std::int64_t offset);

private:
    QByteArray m_bytes;
    std::shared_ptr<const OpenFile> m_file; // nullptr if the body is m_bytes
    std::int64_t m_size;
    std::int64_t m_offset = 0; // in m_bytes
    std::optional<FileReader> m_reader;
};

} // namespace quiv
