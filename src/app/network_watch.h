#pragma once

#include "net/discovery.h"
#include "platform/avahi/avahi_connection.h"
#include "platform/system_changes.h"

#include <QObject>

namespace quiv {

// Tells the discovery what stands in its way, now and whenever that changes. All three outlive it.
class NetworkWatch : public QObject {
public:
    NetworkWatch(SystemChanges& system, AvahiConnection& avahi, Discovery& discovery);
    ~NetworkWatch() override;

private:
    void tell();

    SystemChanges& m_system;
    AvahiConnection& m_avahi;
    Discovery& m_discovery;
};

} // namespace quiv
