#pragma once

#include <QString>

#include <cstdint>
#include <memory>
#include <optional>

namespace quiv {

// What tells whether a file's content is still the same.
struct FileStamp {
    std::int64_t sizeBytes = 0;
    std::int64_t modifiedNs = 0; // since the epoch, as the file system keeps it

    bool operator==(const FileStamp&) const = default;
};

// A file that is held open, whatever becomes of its name. May be used on any thread; the last owner
// leaves closing it to a disk thread.
class OpenFile {
public:
    // Takes over the descriptor, on a disk thread like the next.
    static std::shared_ptr<const OpenFile> owning(int descriptor);
    // Opens a plain file to read it. Returns nullptr, with errno set, if that is impossible.
    static std::shared_ptr<const OpenFile> reading(const QString& path);

    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    int descriptor() const { return m_descriptor; }
    // What it was when it was opened; nothing for what is no plain file.
    const FileStamp& openedStamp() const { return m_openedStamp; }
    // What it is now, asked of the disk. Returns nullopt for anything but a plain file.
    std::optional<FileStamp> stamp() const;

private:
    explicit OpenFile(int descriptor);
    ~OpenFile();

    const int m_descriptor;
    const FileStamp m_openedStamp;
};

} // namespace quiv
