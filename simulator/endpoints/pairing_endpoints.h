#pragma once

#include "simulator/tv/television.h"

#include <httplib.h>

namespace quiv::simulator {

// "api/mac/auth/status", "verify" and "cancel": pairing by the code on the TV's screen.
void addPairingEndpoints(httplib::Server& server, Television& television);

} // namespace quiv::simulator
