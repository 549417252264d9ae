#pragma once

#include <QHash>
#include <QString>
#include <QVariant>

#include <cstdint>
#include <mutex>

namespace quiv {

using SettingsValues = QHash<QString, QVariant>; // texts and real numbers

// The JSON file that keeps settings; only its owner can read it. Its functions wait for the disk.
// Any thread; writes take turns.
//
// The file is replaced as a whole, so neither a full disk nor a crash leaves half of one. Several
// processes may write to it and keep each other's keys. A file that was read and does not parse as
// settings is kept beside the new one with ".unreadable" at the end of its name.
class SettingsFile {
public:
    // What a process knows, and which of it the file does not hold yet.
    struct Update {
        std::uint64_t number; // counts the updates of this process
        SettingsValues values;
        SettingsValues changes; // an invalid value removes the key
    };

    explicit SettingsFile(QString path) : m_path(std::move(path)) {}

    const QString& path() const { return m_path; }
    // What the file holds; nothing if it is missing, cannot be read or does not parse.
    SettingsValues read();
    // Writes the update, unless a newer one was written before. The file's own values stay where
    // the update changes nothing. Returns false if the disk has not taken the update.
    bool write(const Update& update);

private:
    QString m_path;
    std::mutex m_oneAtATime;
    std::uint64_t m_newestWritten = 0; // guarded by m_oneAtATime, like m_isKnown
    bool m_isKnown = false;            // the process has read the file, or found none
};

} // namespace quiv
