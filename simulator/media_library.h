#pragma once

#include "simulator/generated_entries.h"
#include "simulator/media_entry.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <mutex>
#include <optional>
#include <vector>

namespace quiv::simulator {

// The TV's media: what lies in its media folder and on its USB drive, read from disk for every
// listing, and generated entries. Sub-folders are not looked into. Thread-safe.
class MediaLibrary {
public:
    // An empty `usbFolder`: the TV knows no USB drive.
    MediaLibrary(QString mediaFolder, QString usbFolder, int generatedCount);

    // The reply of "api/files"; the same bytes as before when nothing changed.
    QByteArray listing();

    using Change = std::function<std::optional<QString>(GeneratedEntries&)>;
    // Runs `change` on the generated entries and gives back its complaint.
    std::optional<QString> changeGenerated(const Change& change);
    void setUsbConnected(bool connected);

private:
    // What a listing is made from besides the generated entries, which have their revision.
    struct State {
        std::vector<MediaEntry> onDisk;
        int generatedRevision = 0;
        bool usbConnected = true;

        bool operator==(const State&) const = default;
    };

    State readState() const;
    QByteArray makeListing(const State& state) const;
    QByteArray storageJson(const State& state) const;

    std::mutex m_mutex;
    const QString m_mediaFolder;
    const QString m_usbFolder;
    GeneratedEntries m_generated;
    bool m_usbConnected = true;
    State m_listedState;
    QByteArray m_listing;
};

} // namespace quiv::simulator
