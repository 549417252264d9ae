#pragma once

#include "simulator/library/media_library.h"

#include <QJsonObject>
#include <QString>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <thread>

namespace quiv::simulator {

using namespace Qt::StringLiterals;

// Moves a file between the TV's storages, one at a time, on a thread of its own that takes its time
// over it. A move that fails leaves the file where it was. Thread-safe.
class StorageMover {
public:
    using Duration = std::chrono::milliseconds;

    StorageMover(MediaLibrary& library, Duration duration);
    ~StorageMover();
    Q_DISABLE_COPY_MOVE(StorageMover)

    struct Refusal {
        int status = 409;
        QString reason;
    };
    // Begins a move, or refuses it with a status and a reason.
    std::optional<Refusal> start(const QString& name, bool toUsb);
    bool isMoving(const QString& name);
    // Has the next move fail half way.
    void failNext();

    // The reply of "api/move-status".
    QJsonObject status();

private:
    struct Status {
        QString state = u"IDLE"_s;
        QString fileName;
        QString message;
        qint64 movedBytes = 0;
        qint64 totalBytes = 0;
        qint64 updatedAtMs = 0;
    };

    void move(const MediaEntry& entry, bool toUsb);
    // Leaves nothing but the file where it was when it fails.
    bool moveFile(MediaLibrary::Moving moving);
    bool copyInSlices(MediaLibrary::Moving& moving);
    // Returns false if the program ends meanwhile.
    bool waitForNextSlice();
    void tell(const QString& state, qint64 movedBytes, const QString& message);

    MediaLibrary& m_library;
    const Duration m_duration;
    std::mutex m_mutex;
    Status m_status;
    std::condition_variable m_ending;
    bool m_stops = false;
    std::atomic<bool> m_failsNext = false;
    std::thread m_thread;
};

} // namespace quiv::simulator
