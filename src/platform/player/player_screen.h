#pragma once

#include "platform/player/media_player.h"

class QQuickItem;

namespace quiv {

// What the controls over a picture show. Times are seconds.
struct ScreenState {
    bool isPlaying = false;   // or would, if enough had arrived; false at the end
    bool isBuffering = false; // waits for the TV
    bool hasPicture = false;  // something is to be seen
    double position = 0;
    double duration = 0;      // 0 while unknown
    double bufferedUntil = 0; // how far it could play without the TV
    double volume = 1;        // 0 to 1
    bool isMuted = false;

    bool operator==(const ScreenState&) const = default;
};

// A player as its panel sees it: the picture, and controls that the model has no part in. Main
// thread only.
class PlayerScreen {
public:
    virtual ~PlayerScreen() = default;

    virtual const ScreenState& state() const = 0;
    // `observer` is called after every change; while a video goes on, a few times a second.
    [[nodiscard]] virtual std::unique_ptr<Observation>
    observeState(std::function<void()> observer) = 0;

    // Playing on at the end begins again.
    virtual void setPlaying(bool isPlaying) = 0;
    virtual void seek(double seconds) = 0;
    virtual void setVolume(double volume) = 0;
    virtual void setMuted(bool isMuted) = 0;
    // Makes the item that shows the picture, as large as possible in its own proportions. The
    // caller owns it; it may outlive the player and shows nothing then.
    virtual QQuickItem* makeVideo() = 0;
};

} // namespace quiv
