#pragma once

#include "model/window_state.h"
#include "platform/desktop/media_controls.h"
#include "platform/player/player_screen.h"

#include <optional>

namespace quiv {

// What the desktop's media controls show, without the picture; nullopt if nothing plays.
// Of this computer's player:
std::optional<MediaSession> localMediaSession(const LocalPlaybackState& playback);
// Of the TV's, under the title that the dock shows:
std::optional<MediaSession> remoteMediaSession(const WindowState& state, const QString& title);

} // namespace quiv
