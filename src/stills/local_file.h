#pragma once

#include <cstdint>
#include <span>

namespace quiv {

// A regular file, open for reading. Throws NoStill when it cannot be opened or is anything else; a
// FIFO or a device never blocks it.
class LocalFile {
public:
    explicit LocalFile(const char* path);
    ~LocalFile();
    LocalFile(const LocalFile&) = delete;
    LocalFile& operator=(const LocalFile&) = delete;

    std::int64_t size() const { return m_size; } // when it was opened

    // How many bytes were read from this place on; 0 at the end, negative: the negated errno.
    std::int64_t read(std::int64_t position, std::span<std::uint8_t> into) const;

private:
    int m_descriptor;
    std::int64_t m_size = 0;
};

} // namespace quiv
