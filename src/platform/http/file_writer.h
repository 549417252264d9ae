#pragma once

#include "platform/open_file.h"

#include <QByteArrayView>

#include <cstdint>
#include <functional>
#include <memory>

namespace quiv {

// Writes a file behind whoever receives it, on disk threads, so that putting bytes never waits for
// the disk. Used on one thread.
class FileWriter {
public:
    enum class Outcome { Done, Pending, Failed };

    // `keptFree`: bytes of the disk that are left free, at least nearly; writing fails before it
    // takes them. `onReady` is called on a disk thread when it is worth asking again after an
    // outcome was Pending. It is not called after the destructor.
    FileWriter(std::shared_ptr<const OpenFile> file, std::int64_t keptFree,
               std::function<void()> onReady);
    ~FileWriter();
    FileWriter(const FileWriter&) = delete;
    FileWriter& operator=(const FileWriter&) = delete;

    // Takes over all of the bytes, at most LargestPut, or none while there is no room.
    Outcome put(QByteArrayView bytes);
    // Whether all that was put is written.
    Outcome finish();

    static constexpr std::size_t LargestPut = 512 << 10;

private:
    struct State;
    static void writeBehind(const std::shared_ptr<State>& state);

    const std::shared_ptr<State> m_state; // shared with the disk thread
};

} // namespace quiv
