#pragma once

#include <QByteArrayView>

#include <algorithm>
#include <cstring>
#include <memory>
#include <span>

namespace quiv {

// Bytes on their way from one end to the other, at most `capacity` of them. Not synchronised: but
// what free() and filled() return stays where it is until provide() and consume(), so that the two
// ends may work on those spans at the same time.
class ByteRing {
public:
    explicit ByteRing(std::size_t capacity)
        : m_capacity(capacity), m_bytes(std::make_unique_for_overwrite<char[]>(capacity)) {}

    std::size_t size() const { return m_size; }
    std::size_t room() const { return m_capacity - m_size; }

    // As many free bytes as lie together.
    std::span<char> free() const {
        const std::size_t start = (m_start + m_size) % m_capacity;
        return {m_bytes.get() + start, std::min(room(), m_capacity - start)};
    }
    void provide(std::size_t count) { m_size += count; }

    // As many of the oldest bytes as lie together.
    std::span<const char> filled() const {
        return {m_bytes.get() + m_start, std::min(m_size, m_capacity - m_start)};
    }
    void consume(std::size_t count) {
        m_start = (m_start + count) % m_capacity;
        m_size -= count;
    }
    void clear() { consume(m_size); }

    // Copies the bytes in, for which there is room.
    void put(QByteArrayView bytes) {
        while (!bytes.isEmpty()) {
            const auto part = free();
            const auto count = std::min(part.size(), std::size_t(bytes.size()));
            std::memcpy(part.data(), bytes.data(), count);
            provide(count);
            bytes = bytes.sliced(qsizetype(count));
        }
    }
    // Copies the oldest bytes out and returns their count.
    std::size_t take(std::span<char> target) {
        std::size_t taken = 0;
        while (taken < target.size() && m_size > 0) {
            const auto part = filled();
            const auto count = std::min(part.size(), target.size() - taken);
            std::memcpy(target.data() + taken, part.data(), count);
            consume(count);
            taken += count;
        }
        return taken;
    }

private:
    std::size_t m_capacity;
    std::unique_ptr<char[]> m_bytes;
    std::size_t m_start = 0;
    std::size_t m_size = 0;
};

} // namespace quiv
