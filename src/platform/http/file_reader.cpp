#include "platform/http/file_reader.h"

#include "platform/async/threads.h"
#include "platform/http/byte_ring.h"

#include <algorithm>
#include <cerrno>
#include <mutex>
#include <unistd.h>
#include <utility>

namespace quiv {

namespace {

constexpr std::size_t ReadAhead = 1 << 20;
constexpr std::size_t LargestRead = 256 << 10;

ssize_t readAt(const OpenFile& file, std::span<char> target, std::int64_t offset) {
    ssize_t count = 0;
    do {
        count = ::pread(file.descriptor(), target.data(), target.size(), offset);
    } while (count < 0 && errno == EINTR);
    return count;
}

} // namespace

struct FileReader::State {
    State(std::shared_ptr<const OpenFile> itsFile, std::int64_t itsSize,
          std::function<void()> whenReady)
        : file(std::move(itsFile)), size(itsSize), onReady(std::move(whenReady)) {}

    const std::shared_ptr<const OpenFile> file;
    const std::int64_t size;

    std::mutex mutex; // guards the rest
    std::function<void()> onReady;
    ByteRing ring{std::size_t(std::clamp<std::int64_t>(size, 1, ReadAhead))};
    std::int64_t offset = 0; // of what is read next
    bool isReading = false;
    bool isAwaited = false;
    bool hasMoved = false; // during the read under way, which is then worth nothing
    bool hasFailed = false;

    bool mayRead() const { return onReady && !hasFailed && offset < size && ring.room() > 0; }
};

FileReader::FileReader(std::shared_ptr<const OpenFile> file, std::int64_t size,
                       std::function<void()> onReady)
    : m_state(std::make_shared<State>(std::move(file), size, std::move(onReady))) {
    const std::lock_guard lock(m_state->mutex);
    start(m_state);
}

FileReader::~FileReader() {
    const std::lock_guard lock(m_state->mutex);
    m_state->onReady = nullptr;
}

FileReader::Taken FileReader::take(std::span<char> target) {
    State& state = *m_state;
    const std::lock_guard lock(state.mutex);
    const std::size_t count = state.ring.take(target);
    if (state.ring.room() >= state.ring.size())
        start(m_state);
    if (count > 0)
        return {Taken::Kind::Bytes, count};
    if (state.hasFailed)
        return {Taken::Kind::Failed};
    state.isAwaited = state.offset < state.size || state.hasMoved;
    return {state.isAwaited ? Taken::Kind::Pending : Taken::Kind::Bytes};
}

void FileReader::seek(std::int64_t offset) {
    State& state = *m_state;
    const std::lock_guard lock(state.mutex);
    state.ring.clear();
    state.offset = offset;
    state.hasMoved = state.isReading;
    state.hasFailed = false;
    start(m_state);
}

// The mutex is held.
void FileReader::start(const std::shared_ptr<State>& state) {
    if (state->isReading || !state->mayRead())
        return;
    state->isReading = true;
    runOnDiskThread([state] { readAhead(state); });
}

// On a disk thread, until there is no room left. The mutex is not held while it reads: the free
// bytes of the ring are this thread's alone until they are provided.
void FileReader::readAhead(const std::shared_ptr<State>& state) {
    std::unique_lock lock(state->mutex);
    while (state->mayRead()) {
        const auto left = std::size_t(state->size - state->offset);
        const auto room = state->ring.free();
        const auto target = room.first(std::min({room.size(), left, LargestRead}));
        const std::int64_t offset = state->offset;
        lock.unlock();
        const ssize_t count = readAt(*state->file, target, offset);
        lock.lock();
        if (std::exchange(state->hasMoved, false))
            continue;
        if (count > 0) {
            state->ring.provide(std::size_t(count));
            state->offset += count;
        } else {
            state->hasFailed = true;
        }
        if (std::exchange(state->isAwaited, false) && state->onReady)
            state->onReady();
    }
    state->isReading = false;
}

} // namespace quiv
