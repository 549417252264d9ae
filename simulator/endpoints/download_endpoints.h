#pragma once

#include "simulator/tv/television.h"

#include <httplib.h>

namespace quiv::simulator {

// The bytes of files: to keep, or to play in whatever pieces.
void addDownloadEndpoints(httplib::Server& server, Television& television);

} // namespace quiv::simulator
