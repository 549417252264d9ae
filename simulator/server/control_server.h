#pragma once

#include "simulator/announcing/announcement_control.h"
#include "simulator/faults/fault_list.h"
#include "simulator/server/http_listener.h"
#include "simulator/server/request_log.h"
#include "simulator/tv/television.h"

namespace quiv::simulator {

// The control address, on the loopback interface only: what a test or a person does to the TV that
// is not part of its HTTP interface. README.md lists its requests.
class ControlServer {
public:
    ControlServer(Television& television, FaultList& faults, RequestLog& log,
                  AnnouncementControl& announcement);

    // Port 0 takes a free one. Returns false if the port is taken.
    bool listen(quint16 port);
    quint16 port() const { return m_listener.port(); }
    void stop() { m_listener.stop(); }

private:
    void addFaultRoutes(FaultList& faults);
    void addRequestRoutes(RequestLog& log);
    void addPairingRoutes(Pairing& pairing);
    void addLibraryRoutes(MediaLibrary& library);
    void addMoveRoutes(StorageMover& mover);
    void addScreenRoutes(Television& television);
    void addIdentityRoutes(Identity& identity, AnnouncementControl& announcement);

    HttpListener m_listener;
};

} // namespace quiv::simulator
