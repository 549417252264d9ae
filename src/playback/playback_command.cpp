#include "playback/playback_command.h"

#include <algorithm>

namespace quiv {

PlaybackCommand PlaybackCommand::play(const QString& name) {
    return {.command = QStringLiteral("play"), .name = name};
}

PlaybackCommand PlaybackCommand::pause() {
    return {.command = QStringLiteral("pause")};
}

PlaybackCommand PlaybackCommand::resume() {
    return {.command = QStringLiteral("resume")};
}

PlaybackCommand PlaybackCommand::stop() {
    return {.command = QStringLiteral("stop")};
}

PlaybackCommand PlaybackCommand::seekBy(std::int64_t offsetMs) {
    return {.command = QStringLiteral("seek_by"), .offsetMs = offsetMs};
}

PlaybackCommand PlaybackCommand::seekTo(std::int64_t positionMs) {
    return {.command = QStringLiteral("seek_to"),
            .positionMs = std::max<std::int64_t>(positionMs, 0)};
}

PlaybackCommand PlaybackCommand::setSpeed(double speed) {
    return {.command = QStringLiteral("set_speed"), .speed = speed};
}

PlaybackCommand PlaybackCommand::setSubtitle(const std::optional<QString>& trackId) {
    return {.command = QStringLiteral("set_subtitle"), .trackId = trackId};
}

PlaybackCommand PlaybackCommand::setAudio(const QString& trackId) {
    return {.command = QStringLiteral("set_audio"), .trackId = trackId};
}

QueryItems queryItems(const PlaybackCommand& command) {
    QueryItems items{{QStringLiteral("command"), command.command}};
    if (command.name)
        items.append({QStringLiteral("name"), *command.name});
    if (command.offsetMs)
        items.append({QStringLiteral("offsetMs"), QString::number(*command.offsetMs)});
    if (command.positionMs)
        items.append({QStringLiteral("positionMs"), QString::number(*command.positionMs)});
    if (command.speed)
        items.append({QStringLiteral("speed"), QString::number(*command.speed, 'f', 2)});
    if (command.trackId)
        items.append({QStringLiteral("trackId"), *command.trackId});
    return items;
}

} // namespace quiv
