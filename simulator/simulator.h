#pragma once

#include "simulator/announcing/announcement_control.h"
#include "simulator/options.h"
#include "simulator/server/control_server.h"
#include "simulator/server/tv_server.h"
#include "simulator/tv/television.h"

#include <QTimer>

namespace quiv::simulator {

// The program: a TV, its HTTP interface, its control address and its announcement, put together
// from the options.
class Simulator {
public:
    explicit Simulator(Options options);
    ~Simulator();
    Q_DISABLE_COPY_MOVE(Simulator)

    // Prints which port is taken and returns false if one is.
    bool start();

private:
    bool listen();
    void announce();
    void printStart() const;

    const Options m_options;
    Television m_television;
    FaultList m_faults;
    RequestLog m_log;
    AnnouncementControl m_announcement;
    TvServer m_server;
    ControlServer m_control;
    QTimer m_codeTimer;
};

} // namespace quiv::simulator
