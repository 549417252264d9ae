#pragma once

#include "simulator/stop_signal.h"

#include <httplib.h>

#include <chrono>

namespace quiv::simulator {

// The socket under a request that is being answered, for what HTTP cannot express. The server
// library keeps its sockets to itself, so it is found among the process's descriptors by its
// addresses. Valid while the request is being answered, on the thread that answers it.
class Connection {
public:
    explicit Connection(const httplib::Request& request);

    // Breaks the connection at once: the peer gets a reset, not an end of stream.
    void reset();
    // Ends the connection without reading what the peer is still sending; waits two seconds for the
    // peer to take the reply and leave.
    void end(const StopSignal& stop);
    // Waits until the peer has received what was written, at most two seconds.
    void waitUntilDelivered() const;
    // Returns true when the whole time passed, false when the peer left or the program ends.
    bool waitFor(std::chrono::milliseconds time, const StopSignal& stop) const;
    // Waits until the peer leaves or the program ends.
    void waitUntilGone(const StopSignal& stop) const;

private:
    int m_descriptor; // is -1 if the peer is gone already
};

// Breaks every connection accepted on a port.
void resetConnections(quint16 localPort);
// Shuts down every connection accepted on a port, which wakes the threads reading from them.
void shutDownConnections(quint16 localPort);

} // namespace quiv::simulator
