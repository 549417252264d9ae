#pragma once

#include "simulator/library/media_library.h"

#include <QByteArray>
#include <QHash>
#include <QString>

#include <atomic>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>

namespace quiv::simulator {

// The pictures of videos: brought by clients, else made by ffmpeg when first asked for, one after
// the other on a thread of its own. Thread-safe.
class Thumbnails {
public:
    explicit Thumbnails(MediaLibrary& library);
    ~Thumbnails();
    Q_DISABLE_COPY_MOVE(Thumbnails)

    // An empty picture changes nothing.
    void bring(const QString& name, const QByteArray& jpeg);
    void forget(const QString& name);
    // Returns an empty picture if there is none, or none yet.
    QByteArray find(const QString& name);

private:
    QByteArray madeFor(const MediaEntry& entry);
    void makeWanted();
    QByteArray make(const MediaEntry& entry);

    MediaLibrary& m_library;
    std::mutex m_mutex;
    QHash<QString, QByteArray> m_brought; // by name
    QHash<QString, QByteArray> m_made;    // by name and time of change; empty if impossible
    std::deque<MediaEntry> m_wanted;
    std::condition_variable m_change;
    std::atomic<bool> m_stops = false;
    std::thread m_thread;
};

} // namespace quiv::simulator
