#pragma once

#include "simulator/library/generated_entries.h"
#include "simulator/library/media_entry.h"
#include "simulator/library/media_tracks.h"

#include <QByteArray>
#include <QFile>
#include <QHash>
#include <QString>
#include <QTemporaryFile>

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

namespace quiv::simulator {

// The TV's media: what lies in its media folder and on its USB drive, read from disk for every
// listing, and generated entries. Sub-folders are not looked into. Thread-safe.
class MediaLibrary {
public:
    // With an empty `usbFolder` the TV knows no USB drive.
    MediaLibrary(QString mediaFolder, QString usbFolder, int generatedCount);

    // Returns the reply of "api/files": the same bytes as before while nothing changes.
    QByteArray listing();

    using Change = std::function<std::optional<QString>(GeneratedEntries&)>;
    // Runs `change` on the generated entries and gives back its complaint.
    std::optional<QString> changeGenerated(const Change& change);
    void setUsbConnected(bool connected);
    bool isUsbConnected();

    // Where uploads go, and how much fits there.
    QString uploadFolder();
    qint64 freeBytes();
    // Sets how much is left on each storage, whatever lies on it; nullopt stands for a lot.
    void setFreeBytes(std::optional<qint64> bytes);

    // Returns the entry as it is listed now, or nullopt if it is not.
    std::optional<MediaEntry> find(const QString& name);
    // Returns where a listed file lies, or an empty path for a generated entry.
    QString pathOf(const MediaEntry& entry) const;
    // The details include the subtitle files that belong to the video.
    MediaDetails detailsOf(const MediaEntry& entry);
    // Removes the entry from disk or from the generated entries.
    bool remove(const MediaEntry& entry);

    // A file on its way to the other storage: copied beside its place there, under another name,
    // until it is whole. One that is not finished takes its copy along when it goes.
    class Moving {
    public:
        Moving(MediaEntry entry, bool toUsb, const QString& from, const QString& to);

        const QString& name() const { return m_entry.name; }
        qint64 sizeBytes() const { return m_entry.sizeBytes; }
        // Returns false if a disk fails.
        bool copyUpTo(qint64 end);

    private:
        friend class MediaLibrary;

        MediaEntry m_entry;
        bool m_toUsb;
        std::unique_ptr<QFile> m_source; // is nullptr for a generated entry
        std::unique_ptr<QTemporaryFile> m_copy;
        QString m_target;
    };
    Moving beginMove(const MediaEntry& entry, bool toUsb) const;
    // Puts the whole copy into its place and removes the original.
    bool finishMove(Moving& moving);

private:
    // What a listing is made from besides the generated entries, which have their revision.
    struct State {
        std::vector<MediaEntry> onDisk;
        int generatedRevision = 0;
        bool usbConnected = true;
        std::optional<qint64> freeBytes;

        bool operator==(const State&) const = default;
    };

    // What the file itself tells; asked once.
    MediaDetails probed(const QString& path, qint64 lastModifiedMs);
    State readState() const;
    QByteArray makeListing(const State& state) const;
    QByteArray storageJson(const State& state) const;

    std::mutex m_mutex;
    const QString m_mediaFolder;
    const QString m_usbFolder;
    GeneratedEntries m_generated;
    bool m_usbConnected = true;
    std::optional<qint64> m_freeBytes;
    State m_listedState;
    QByteArray m_listing;
    QHash<QString, MediaDetails> m_details; // by path and time of modification
};

} // namespace quiv::simulator
