#include "platform/avahi/avahi_daemon_backend.h"

#include "platform/avahi/avahi_lookup.h"

#include <avahi-client/lookup.h>

namespace quiv {

namespace {

using SearchLookup = AvahiLookupObject<::AvahiServiceBrowser, avahi_service_browser_free>;
using PlaceLookup = AvahiLookupObject<::AvahiServiceResolver, avahi_service_resolver_free>;
using AddressLookup = AvahiLookupObject<::AvahiHostNameResolver, avahi_host_name_resolver_free>;

// The state is looked at from the loop, where the client may be freed.
void ignoreState(AvahiClient*, AvahiClientState, void*) {}

// Returns the lookup with what was created for it, or nullptr if nothing was.
template <class Lookup, class Object>
std::unique_ptr<AvahiLookup> started(std::unique_ptr<Lookup> lookup, Object* object) {
    lookup->own(object);
    return object ? std::move(lookup) : nullptr;
}

} // namespace

std::unique_ptr<AvahiDaemonBackend> AvahiDaemonBackend::create(const AvahiPoll* poll) {
    AvahiClient* client =
        avahi_client_new(poll, AVAHI_CLIENT_NO_FAIL, ignoreState, nullptr, nullptr);
    if (!client)
        return nullptr;
    return std::unique_ptr<AvahiDaemonBackend>(new AvahiDaemonBackend(client));
}

bool AvahiDaemonBackend::isRunning() const {
    switch (avahi_client_get_state(m_client.get())) {
    case AVAHI_CLIENT_S_REGISTERING:
    case AVAHI_CLIENT_S_RUNNING:
    case AVAHI_CLIENT_S_COLLISION:
        return true;
    case AVAHI_CLIENT_CONNECTING:
    case AVAHI_CLIENT_FAILURE:
        return false;
    }
    return false;
}

bool AvahiDaemonBackend::isBroken() const {
    return avahi_client_get_state(m_client.get()) == AVAHI_CLIENT_FAILURE;
}

std::unique_ptr<AvahiLookup> AvahiDaemonBackend::ask(const AvahiQuestion& question,
                                                     Listener listener) {
    return std::visit([&](const auto& asked) { return start(asked, std::move(listener)); },
                      question);
}

std::unique_ptr<AvahiLookup> AvahiDaemonBackend::start(const SearchQuestion& question,
                                                       Listener listener) {
    auto lookup = std::make_unique<SearchLookup>(std::move(listener));
    auto* object = avahi_service_browser_new(
        m_client.get(), AVAHI_IF_UNSPEC, AVAHI_PROTO_UNSPEC, question.type.constData(),
        question.domain.constData(), AvahiLookupFlags{}, SearchLookup::onService, lookup.get());
    return started(std::move(lookup), object);
}

std::unique_ptr<AvahiLookup> AvahiDaemonBackend::start(const PlaceQuestion& question,
                                                       Listener listener) {
    auto lookup = std::make_unique<PlaceLookup>(std::move(listener));
    const auto flags = static_cast<AvahiLookupFlags>(AVAHI_LOOKUP_NO_TXT | AVAHI_LOOKUP_NO_ADDRESS);
    auto* object = avahi_service_resolver_new(m_client.get(), AVAHI_IF_UNSPEC, AVAHI_PROTO_UNSPEC,
                                              question.name.constData(), question.type.constData(),
                                              question.domain.constData(), AVAHI_PROTO_UNSPEC,
                                              flags, PlaceLookup::onPlace, lookup.get());
    return started(std::move(lookup), object);
}

std::unique_ptr<AvahiLookup> AvahiDaemonBackend::start(const AddressQuestion& question,
                                                       Listener listener) {
    auto lookup = std::make_unique<AddressLookup>(std::move(listener));
    auto* object = avahi_host_name_resolver_new(
        m_client.get(), AVAHI_IF_UNSPEC, AVAHI_PROTO_UNSPEC, question.hostName.constData(),
        toAvahi(question.family), AvahiLookupFlags{}, AddressLookup::onAddress, lookup.get());
    return started(std::move(lookup), object);
}

} // namespace quiv
