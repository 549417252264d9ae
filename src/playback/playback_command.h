#pragma once

#include "net/tv_request.h"

#include <QString>

#include <cstdint>
#include <optional>

namespace quiv {

// A command for the TV's player: its word and what goes with it.
struct PlaybackCommand {
    QString command; // "play", "pause", "resume", "stop", "seek_by", "seek_to", "set_speed", ...
    std::optional<QString> name{};          // of a video
    std::optional<std::int64_t> offsetMs{}; // of a seek from where the TV is
    std::optional<std::int64_t> positionMs{};
    std::optional<double> speed{};
    std::optional<QString> trackId{}; // absent in "set_subtitle" to show no subtitles

    static PlaybackCommand play(const QString& name);
    static PlaybackCommand pause();
    static PlaybackCommand resume();
    static PlaybackCommand stop();
    static PlaybackCommand seekBy(std::int64_t offsetMs);
    // A negative position is the beginning.
    static PlaybackCommand seekTo(std::int64_t positionMs);
    static PlaybackCommand setSpeed(double speed);
    static PlaybackCommand setSubtitle(const std::optional<QString>& trackId);
    static PlaybackCommand setAudio(const QString& trackId);

    bool operator==(const PlaybackCommand&) const = default;
};

// In the order the TV expects; only what is absent is left out. The speed has two decimals and a
// point in every locale.
QueryItems queryItems(const PlaybackCommand& command);

} // namespace quiv
