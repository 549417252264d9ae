#pragma once

#include "platform/avahi/avahi_backend.h"

#include <avahi-common/watch.h>
#include <avahi-core/core.h>
#include <memory>

namespace quiv {

// A multicast DNS stack of our own, for systems where no Avahi daemon runs. It only asks: nothing
// of this host is published. Follows the network's coming and going by itself.
//
// That it publishes nothing matters twice: Avahi's core and client libraries both export a function
// avahi_entry_group_free, so in a process that uses both, a server that has published something
// calls the wrong one and aborts.
//
// Avahi thread only.
class AvahiEmbeddedBackend final : public AvahiBackend {
public:
    // Returns nullptr if the multicast DNS port cannot be used.
    static std::unique_ptr<AvahiEmbeddedBackend> create(const AvahiPoll* poll);

    std::unique_ptr<AvahiLookup> ask(const AvahiQuestion& question, Listener listener) override;

private:
    struct FreeServer {
        void operator()(AvahiServer* server) const { avahi_server_free(server); }
    };

    explicit AvahiEmbeddedBackend(AvahiServer* server) : m_server(server) {}

    std::unique_ptr<AvahiLookup> start(const SearchQuestion& question, Listener listener);
    std::unique_ptr<AvahiLookup> start(const PlaceQuestion& question, Listener listener);
    std::unique_ptr<AvahiLookup> start(const AddressQuestion& question, Listener listener);

    std::unique_ptr<AvahiServer, FreeServer> m_server;
};

} // namespace quiv
