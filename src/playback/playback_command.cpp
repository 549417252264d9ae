#include "playback/playback_command.h"

#include <algorithm>

namespace quiv {

using namespace Qt::StringLiterals;

PlaybackCommand PlaybackCommand::play(const QString& name) {
    return {.command = u"play"_s, .name = name};
}

PlaybackCommand PlaybackCommand::pause() {
    return {.command = u"pause"_s};
}

PlaybackCommand PlaybackCommand::resume() {
    return {.command = u"resume"_s};
}

PlaybackCommand PlaybackCommand::stop() {
    return {.command = u"stop"_s};
}

PlaybackCommand PlaybackCommand::seekBy(std::int64_t offsetMs) {
    return {.command = u"seek_by"_s, .offsetMs = offsetMs};
}

PlaybackCommand PlaybackCommand::seekTo(std::int64_t positionMs) {
    return {.command = u"seek_to"_s, .positionMs = std::max<std::int64_t>(positionMs, 0)};
}

PlaybackCommand PlaybackCommand::setSpeed(double speed) {
    return {.command = u"set_speed"_s, .speed = speed};
}

PlaybackCommand PlaybackCommand::setSubtitle(const std::optional<QString>& trackId) {
    return {.command = u"set_subtitle"_s, .trackId = trackId};
}

PlaybackCommand PlaybackCommand::setAudio(const QString& trackId) {
    return {.command = u"set_audio"_s, .trackId = trackId};
}

QueryItems queryItems(const PlaybackCommand& command) {
    QueryItems items{{u"command"_s, command.command}};
    if (command.name)
        items.append({u"name"_s, *command.name});
    if (command.offsetMs)
        items.append({u"offsetMs"_s, QString::number(*command.offsetMs)});
    if (command.positionMs)
        items.append({u"positionMs"_s, QString::number(*command.positionMs)});
    if (command.speed)
        items.append({u"speed"_s, QString::number(*command.speed, 'f', 2)});
    if (command.trackId)
        items.append({u"trackId"_s, *command.trackId});
    return items;
}

} // namespace quiv
