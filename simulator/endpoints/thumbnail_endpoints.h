#pragma once

#include "simulator/tv/television.h"

#include <httplib.h>

namespace quiv::simulator {

// The pictures of videos, brought and shown.
void addThumbnailEndpoints(httplib::Server& server, Television& television);

} // namespace quiv::simulator
