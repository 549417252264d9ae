#pragma once

#include "simulator/announcing/announcer.h"

#include <avahi-client/client.h>
#include <avahi-client/publish.h>
#include <avahi-common/thread-watch.h>

namespace quiv::simulator {

// Announces through the system's avahi-daemon. When the daemon ends, so does the announcement.
class DaemonAnnouncer final : public Announcer {
public:
    // Returns nullptr if no daemon runs.
    static std::unique_ptr<Announcer> create(const Settings& settings, QString* problem);
    ~DaemonAnnouncer() override;

protected:
    void lock() override;
    void unlock() override;
    bool isReady() const override;
    void reset() override;
    int addService(const char* name, const char* host, quint16 port) override;
    int addAddress(const char* host, const InterfaceAddress& address) override;
    int commit() override;

private:
    explicit DaemonAnnouncer(const Settings& settings);
    int start();
    void clientChanged(AvahiClientState state);

    AvahiThreadedPoll* m_poll;
    AvahiClient* m_client = nullptr;
    AvahiEntryGroup* m_group = nullptr;
};

} // namespace quiv::simulator
