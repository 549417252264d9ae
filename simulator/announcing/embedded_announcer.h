#pragma once

#include "simulator/announcing/announcer.h"

#include <avahi-common/thread-watch.h>
#include <avahi-core/core.h>
#include <avahi-core/publish.h>

namespace quiv::simulator {

// Announces with an mDNS stack of its own, for machines without the system's daemon and for network
// namespaces.
class EmbeddedAnnouncer final : public Announcer {
public:
    static std::unique_ptr<Announcer> create(const Settings& settings, QString* problem);
    ~EmbeddedAnnouncer() override;

protected:
    void lock() override;
    void unlock() override;
    bool isReady() const override;
    void reset() override;
    int addService(const char* name, const char* host, quint16 port) override;
    int addAddress(const char* host, const InterfaceAddress& address) override;
    int commit() override;

private:
    explicit EmbeddedAnnouncer(const Settings& settings);
    int start();
    void serverChanged(AvahiServerState state);

    AvahiThreadedPoll* m_poll;
    AvahiServer* m_server = nullptr;
    AvahiSEntryGroup* m_group = nullptr;
};

} // namespace quiv::simulator
