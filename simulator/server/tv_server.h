#pragma once

#include "simulator/faults/fault_injector.h"
#include "simulator/faults/outage.h"
#include "simulator/server/http_listener.h"
#include "simulator/server/request_log.h"
#include "simulator/stop_signal.h"
#include "simulator/tv/television.h"

namespace quiv::simulator {

// The TV's HTTP interface: every endpoint family, the request log, the faults, token renewal.
// Requests are answered on threads of their own until stop().
class TvServer {
public:
    enum class Protocol { AnyIp, Ipv6Only };

    TvServer(Television& television, FaultList& faults, RequestLog& log, bool printsRequests);
    ~TvServer();
    Q_DISABLE_COPY_MOVE(TvServer)

    // Port 0 takes a free one. Returns false if the port is taken.
    bool listen(quint16 port, Protocol protocol);
    quint16 port() const { return m_listener.port(); }
    // Ends every request, also those that hang.
    void stop();

private:
    httplib::Server::HandlerResponse received(const httplib::Request& request,
                                              httplib::Response& response);
    void replying(const httplib::Request& request, httplib::Response& response);

    Television& m_television;
    RequestLog& m_log;
    const bool m_printsRequests;
    Protocol m_protocol = Protocol::AnyIp;
    StopSignal m_stop;
    Outage m_outage;
    FaultInjector m_injector;
    HttpListener m_listener;
};

} // namespace quiv::simulator
