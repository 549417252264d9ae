#include "ui/desktop/media_session.h"

#include "playback/playback_timeline.h"
#include "ui/display_format.h"
#include "ui/presenters/dock_presenter.h"

#include <cmath>

namespace quiv {

std::optional<MediaSession> localMediaSession(const LocalPlaybackState& playback) {
    const auto& session = playback.localPlaybackSession;
    if (!session || !playback.localPlayer)
        return std::nullopt;
    const ScreenState& screen = playback.localPlayer->state();
    MediaSession shown;
    shown.id = session->id;
    shown.title = displayText(session->displayTitle);
    shown.isPlaying = screen.isPlaying;
    shown.durationMs = std::llround(screen.duration * 1000);
    return shown;
}

std::optional<MediaSession> remoteMediaSession(const WindowState& state, const QString& title) {
    const PlaybackResponse* open = openPlayback(state);
    if (!open)
        return std::nullopt;
    MediaSession shown;
    shown.id = selectedTvKey(state) + u'/' + *open->currentVideoName;
    shown.title = title;
    shown.isPlaying = open->isPlaying;
    shown.speed = open->playbackSpeed;
    shown.slowest = playbackSpeedOptions().constFirst();
    shown.fastest = playbackSpeedOptions().constLast();
    shown.durationMs = std::max<std::int64_t>(0, open->durationMs);
    return shown;
}

} // namespace quiv
