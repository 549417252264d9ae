#pragma once

#include "simulator/tv/television.h"

#include <httplib.h>

namespace quiv::simulator {

// "api/info": who the TV is. Open to everybody.
void addInfoEndpoint(httplib::Server& server, Television& television);

} // namespace quiv::simulator
