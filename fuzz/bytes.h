#pragma once

#include <QByteArray>

#include <cstddef>
#include <cstdint>

namespace quiv {

// What a fuzzer makes up, taken piece by piece; zeros once there is no more.
class Bytes {
public:
    Bytes(const std::uint8_t* data, std::size_t size)
        : m_bytes(reinterpret_cast<const char*>(data), qsizetype(size)) {}

    bool isEmpty() const { return m_offset >= m_bytes.size(); }
    std::uint8_t byte() { return isEmpty() ? 0 : std::uint8_t(m_bytes[m_offset++]); }
    int below(int limit) { return byte() % limit; }
    // At most `length` of them.
    QByteArray take(qsizetype length) {
        const QByteArray taken = m_bytes.mid(m_offset, length);
        m_offset += taken.size();
        return taken;
    }
    QByteArray rest() { return take(m_bytes.size()); }

private:
    QByteArray m_bytes;
    qsizetype m_offset = 0;
};

} // namespace quiv

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
