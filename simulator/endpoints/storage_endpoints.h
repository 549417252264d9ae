#pragma once

#include "simulator/tv/television.h"

#include <httplib.h>

namespace quiv::simulator {

// Moving files between the TV's storages, deleting them.
void addStorageEndpoints(httplib::Server& server, Television& television);

} // namespace quiv::simulator
