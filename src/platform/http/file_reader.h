#pragma once

#include "platform/open_file.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <span>

namespace quiv {

// Reads a file ahead of whoever sends it, on disk threads, so that taking its bytes never waits for
// the disk. Used on one thread.
class FileReader {
public:
    struct Taken {
        enum class Kind { Bytes, Pending, Failed };
        Kind kind = Kind::Bytes;
        std::size_t count = 0; // is 0 at the end of the file
    };

    // `onReady` is called on a disk thread when something has come after take() said Pending. It is
    // not called after the destructor.
    FileReader(std::shared_ptr<const OpenFile> file, std::int64_t size,
               std::function<void()> onReady);
    ~FileReader();
    FileReader(const FileReader&) = delete;
    FileReader& operator=(const FileReader&) = delete;

    // Copies the next bytes, at most `size` of the file in all. Fails if it cannot be read or has
    // become shorter.
    Taken take(std::span<char> target);
    // What take() gives next.
    void seek(std::int64_t offset);

private:
    struct State;
    static void readAhead(const std::shared_ptr<State>& state);
    static void start(const std::shared_ptr<State>& state);

    const std::shared_ptr<State> m_state; // shared with the disk thread
};

} // namespace quiv
