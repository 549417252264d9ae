#pragma once

#include "simulator/tv/television.h"

#include <httplib.h>

namespace quiv::simulator {

// "api/files": what media the TV holds. Open to everybody unless browsing needs pairing.
void addLibraryEndpoints(httplib::Server& server, Television& television);

} // namespace quiv::simulator
