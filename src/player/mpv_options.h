#pragma once

struct mpv_handle;

namespace quiv {

// How pictures get from the player to the window.
enum class Drawing { OpenGl, Software };

// Sets what holds for every player before it is initialised. The file comes from a TV that nobody
// vouches for: the player reads nothing but the one stream it is given, in the formats of videos,
// and is configured by nobody else. Returns false if the library does not know an option.
bool setOptions(mpv_handle* player, Drawing drawing);

} // namespace quiv
