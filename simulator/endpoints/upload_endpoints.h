#pragma once

#include "simulator/fault_list.h"
#include "simulator/television.h"

#include <httplib.h>

namespace quiv::simulator {

class Absence;
class StopSignal;

// Receiving files, and what can go wrong while they arrive.
void addUploadEndpoints(httplib::Server& server, Television& television, FaultList& faults,
                        Absence& absence, StopSignal& stop);

} // namespace quiv::simulator
