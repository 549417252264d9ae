#pragma once

#include "simulator/faults/fault_list.h"
#include "simulator/stop_signal.h"

#include <httplib.h>

namespace quiv::simulator {

// Makes the faults of a list happen to requests. Thread-safe.
class FaultInjector {
public:
    enum class Outcome {
        Continue, // answer the request as usual
        Replied,  // the response is filled in
        NoReply,  // the connection is gone
    };

    FaultInjector(FaultList& faults, StopSignal& stop) : m_faults(faults), m_stop(stop) {}

    // Before the request is looked at; may take its time.
    Outcome beforeReply(const httplib::Request& request, httplib::Response& response);
    // When the response is complete and not yet sent.
    void alterReply(const httplib::Request& request, httplib::Response& response);

private:
    Outcome hang(const httplib::Request& request);

    FaultList& m_faults;
    StopSignal& m_stop;
};

} // namespace quiv::simulator
