#pragma once

#include "simulator/faults/fault_list.h"
#include "simulator/tv/television.h"

#include <httplib.h>

namespace quiv::simulator {

class Outage;
class StopSignal;

// Receiving files, and what can go wrong while they arrive.
void addUploadEndpoints(httplib::Server& server, Television& television, FaultList& faults,
                        Outage& outage, StopSignal& stop);

} // namespace quiv::simulator
