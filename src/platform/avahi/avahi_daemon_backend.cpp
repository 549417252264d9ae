#include "platform/avahi/avahi_daemon_backend.h"

#include "platform/avahi/avahi_lookup.h"

#include <avahi-client/lookup.h>
#include <cstring>

namespace quiv {

namespace {

using SearchLookup = AvahiLookupObject<::AvahiServiceBrowser, avahi_service_browser_free>;
using PlaceLookup = AvahiLookupObject<::AvahiServiceResolver, avahi_service_resolver_free>;
using AddressLookup = AvahiLookupObject<::AvahiRecordBrowser, avahi_record_browser_free>;

// The address in an A or AAAA record.
std::optional<AvahiAddress> addressIn(std::uint16_t type, const void* data, std::size_t size) {
    AvahiAddress address{};
    if (type == AVAHI_DNS_TYPE_A && size == sizeof address.data.ipv4) {
        address.proto = AVAHI_PROTO_INET;
        std::memcpy(&address.data.ipv4, data, size);
        return address;
    }
    if (type == AVAHI_DNS_TYPE_AAAA && size == sizeof address.data.ipv6) {
        address.proto = AVAHI_PROTO_INET6;
        std::memcpy(&address.data.ipv6, data, size);
        return address;
    }
    return std::nullopt;
}

void onRecord(::AvahiRecordBrowser*, AvahiIfIndex interface, AvahiProtocol protocol,
              AvahiBrowserEvent event, const char*, std::uint16_t, std::uint16_t type,
              const void* data, std::size_t size, AvahiLookupResultFlags, void* lookup) {
    AddressLookup::onAddress({interface, protocol}, event, addressIn(type, data, size), lookup);
}

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
    auto* object = avahi_record_browser_new(m_client.get(), AVAHI_IF_UNSPEC, AVAHI_PROTO_UNSPEC,
                                            question.hostName.constData(), AVAHI_DNS_CLASS_IN,
                                            recordTypeOf(question.family),
                                            AVAHI_LOOKUP_USE_MULTICAST, onRecord, lookup.get());
    return started(std::move(lookup), object);
}

} // namespace quiv
