#pragma once

#include "simulator/library/media_tracks.h"

#include <QJsonObject>
#include <QString>

#include <chrono>
#include <functional>
#include <mutex>
#include <optional>

namespace quiv::simulator {

// The TV's player: one open video whose position advances with time while it plays and stays at the
// end. Thread-safe.
class Player {
public:
    using Instant = std::chrono::steady_clock::time_point;

    explicit Player(std::function<Instant()> now = std::chrono::steady_clock::now);

    // What a command got: refused with a status and a reason, or done.
    struct Refusal {
        int status = 400;
        QString reason;
    };
    using Outcome = std::optional<Refusal>;

    void play(const QString& name, const MediaDetails& details);
    Outcome pause();
    Outcome resume();
    void stop();
    Outcome seekBy(qint64 offsetMs);
    Outcome seekTo(qint64 positionMs);
    Outcome setSpeed(double speed); // 0.25 to 4
    // An empty id stands for no subtitles.
    Outcome setSubtitle(const QString& trackId);
    Outcome setAudio(const QString& trackId);

    // Closes the video if it is this one.
    void close(const QString& name);

    // The reply of "api/playback".
    QJsonObject state();

private:
    struct OpenVideo {
        QString name;
        MediaDetails details;
        bool isPlaying = true;
        double speed = 1;
        double positionMs = 0;
        Instant positionAt;
        QString subtitleId;
        QString audioId;
    };

    OpenVideo* openVideo(); // brought up to now

    std::mutex m_mutex;
    const std::function<Instant()> m_now;
    std::optional<OpenVideo> m_video;
};

} // namespace quiv::simulator
