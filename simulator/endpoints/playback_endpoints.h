#pragma once

#include "simulator/tv/television.h"

#include <httplib.h>

namespace quiv::simulator {

// What the TV plays, and the commands to its player.
void addPlaybackEndpoints(httplib::Server& server, Television& television);

} // namespace quiv::simulator
