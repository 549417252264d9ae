#pragma once

#include "platform/avahi/avahi_backend.h"

#include <avahi-client/client.h>
#include <avahi-common/watch.h>
#include <memory>

namespace quiv {

// The system's Avahi daemon over D-Bus. Exists as soon as the bus can be reached, to watch for the
// daemon; answers while the daemon runs; once broken (the daemon or the bus went) it stays so.
//
// Avahi thread only: its calls wait for the daemon.
class AvahiDaemonBackend final : public AvahiBackend {
public:
    // Returns nullptr if the bus cannot be reached.
    static std::unique_ptr<AvahiDaemonBackend> create(const AvahiPoll* poll);

    bool isRunning() const;
    bool isBroken() const;
    std::unique_ptr<AvahiLookup> ask(const AvahiQuestion& question, Listener listener) override;

private:
    struct FreeClient {
        void operator()(AvahiClient* client) const { avahi_client_free(client); }
    };

    explicit AvahiDaemonBackend(AvahiClient* client) : m_client(client) {}

    std::unique_ptr<AvahiLookup> start(const SearchQuestion& question, Listener listener);
    std::unique_ptr<AvahiLookup> start(const PlaceQuestion& question, Listener listener);
    std::unique_ptr<AvahiLookup> start(const AddressQuestion& question, Listener listener);

    std::unique_ptr<AvahiClient, FreeClient> m_client;
};

} // namespace quiv
