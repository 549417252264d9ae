#include "platform/http/file_writer.h"

#include "platform/async/threads.h"
#include "platform/http/byte_ring.h"

#include <algorithm>
#include <cerrno>
#include <mutex>
#include <sys/statvfs.h>
#include <unistd.h>
#include <utility>

namespace quiv {

namespace {

constexpr std::size_t WriteBehind = 1 << 20;
constexpr std::int64_t FreeSpaceCheckInterval = 4 << 20; // bytes

bool writeAll(const OpenFile& file, std::span<const char> bytes, std::int64_t offset) {
    while (!bytes.empty()) {
        const auto count = ::pwrite(file.descriptor(), bytes.data(), bytes.size(), offset);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return false;
        bytes = bytes.subspan(std::size_t(count));
        offset += count;
    }
    return true;
}

bool hasLessFree(const OpenFile& file, std::int64_t bytes) {
    struct statvfs disk {};
    return ::fstatvfs(file.descriptor(), &disk) == 0 &&
           std::int64_t(disk.f_bavail * disk.f_frsize) < bytes;
}

} // namespace

struct FileWriter::State {
    State(std::shared_ptr<const OpenFile> itsFile, std::int64_t bytesKeptFree,
          std::function<void()> whenReady)
        : file(std::move(itsFile)), keptFree(bytesKeptFree), onReady(std::move(whenReady)) {}

    const std::shared_ptr<const OpenFile> file;
    const std::int64_t keptFree;

    std::mutex mutex; // guards the rest
    std::function<void()> onReady;
    ByteRing ring{WriteBehind};
    std::int64_t written = 0;
    bool isWriting = false;
    bool isAwaited = false;
    bool hasFailed = false;

    bool mayWrite() const { return onReady && !hasFailed && ring.size() > 0; }
};

FileWriter::FileWriter(std::shared_ptr<const OpenFile> file, std::int64_t keptFree,
                       std::function<void()> onReady)
    : m_state(std::make_shared<State>(std::move(file), keptFree, std::move(onReady))) {}

FileWriter::~FileWriter() {
    const std::lock_guard lock(m_state->mutex);
    m_state->onReady = nullptr;
}

FileWriter::Outcome FileWriter::put(QByteArrayView bytes) {
    State& state = *m_state;
    const std::lock_guard lock(state.mutex);
    if (state.hasFailed)
        return Outcome::Failed;
    state.isAwaited = state.ring.room() < std::size_t(bytes.size());
    if (state.isAwaited)
        return Outcome::Pending;
    state.ring.put(bytes);
    if (!state.isWriting && state.mayWrite()) {
        state.isWriting = true;
        runOnDiskThread([shared = m_state] { writeBehind(shared); });
    }
    return Outcome::Done;
}

FileWriter::Outcome FileWriter::finish() {
    State& state = *m_state;
    const std::lock_guard lock(state.mutex);
    if (state.hasFailed)
        return Outcome::Failed;
    state.isAwaited = state.ring.size() > 0;
    return state.isAwaited ? Outcome::Pending : Outcome::Done;
}

// On a disk thread, until nothing is left. The mutex is not held while it writes: the oldest bytes
// of the ring are this thread's alone until they are consumed.
void FileWriter::writeBehind(const std::shared_ptr<State>& state) {
    std::unique_lock lock(state->mutex);
    while (state->mayWrite()) {
        const auto bytes = state->ring.filled();
        const std::int64_t offset = state->written;
        lock.unlock();
        const std::int64_t end = offset + std::int64_t(bytes.size());
        const bool isCheckDue = end / FreeSpaceCheckInterval != offset / FreeSpaceCheckInterval;
        const bool isFull =
            state->keptFree > 0 && isCheckDue && hasLessFree(*state->file, state->keptFree);
        const bool isWritten = !isFull && writeAll(*state->file, bytes, offset);
        lock.lock();
        state->ring.consume(bytes.size());
        state->written = end;
        state->hasFailed = !isWritten;
        const bool isWorthATurn =
            state->hasFailed || state->ring.size() == 0 || state->ring.room() >= LargestPut;
        if (isWorthATurn && std::exchange(state->isAwaited, false) && state->onReady)
            state->onReady();
    }
    state->isWriting = false;
}

} // namespace quiv
