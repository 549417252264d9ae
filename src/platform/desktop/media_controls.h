#pragma once

#include <QString>
#include <QUrl>

#include <cstdint>
#include <optional>

namespace quiv {

// What plays, as the desktop's media controls show it. Times are milliseconds.
struct MediaSession {
    QString id; // another for another video
    QString title;
    QUrl picture; // a file of this computer; empty without one
    bool isPlaying = false;
    double speed = 1;
    double slowest = 1; // the speeds it can have
    double fastest = 1;
    std::int64_t durationMs = 0; // 0: unknown, and no place to go to

    bool operator==(const MediaSession&) const = default;
};

// The desktop's media keys and controls: a panel, a lock screen, a head set. Main thread only.
class MediaControls {
public:
    // What they ask for, while there is a session.
    class Player {
    public:
        virtual ~Player() = default;
        virtual std::int64_t positionMs() const = 0;
        virtual void setPlaying(bool isPlaying) = 0;
        virtual void stop() = 0;
        virtual void seekBy(std::int64_t offsetMs) = 0;
        virtual void seekTo(std::int64_t positionMs) = 0;
        virtual void setSpeed(double speed) = 0;
        virtual void raiseWindow() = 0;
    };

    virtual ~MediaControls() = default;
    // Nothing is asked of it after nullptr.
    virtual void setPlayer(Player* player) = 0;
    // nullopt: nothing plays, and the controls are not offered.
    virtual void show(const std::optional<MediaSession>& session) = 0;
    // The position is another one than time alone would have made it.
    virtual void positionJumped() = 0;
};

} // namespace quiv
