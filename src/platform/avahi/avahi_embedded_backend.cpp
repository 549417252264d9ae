#include "platform/avahi/avahi_embedded_backend.h"

#include "platform/avahi/avahi_lookup.h"

#include <QLoggingCategory>
#include <avahi-core/log.h>
#include <avahi-core/lookup.h>
#include <avahi-core/rr.h>

namespace quiv {

namespace {

Q_LOGGING_CATEGORY(avahiLog, "quiv.avahi", QtWarningMsg)

using SearchLookup = AvahiLookupObject<AvahiSServiceBrowser, avahi_s_service_browser_free>;
using PlaceLookup = AvahiLookupObject<AvahiSServiceResolver, avahi_s_service_resolver_free>;
using AddressLookup = AvahiLookupObject<AvahiSRecordBrowser, avahi_s_record_browser_free>;

// The address in an A or AAAA record; the library gives no record where it is not about one.
std::optional<AvahiAddress> addressIn(const AvahiRecord* record) {
    AvahiAddress address{};
    if (record && record->key->type == AVAHI_DNS_TYPE_A) {
        address.proto = AVAHI_PROTO_INET;
        address.data.ipv4 = record->data.a.address;
        return address;
    }
    if (record && record->key->type == AVAHI_DNS_TYPE_AAAA) {
        address.proto = AVAHI_PROTO_INET6;
        address.data.ipv6 = record->data.aaaa.address;
        return address;
    }
    return std::nullopt;
}

void onRecord(AvahiSRecordBrowser*, AvahiIfIndex interface, AvahiProtocol protocol,
              AvahiBrowserEvent event, AvahiRecord* record, AvahiLookupResultFlags, void* lookup) {
    AddressLookup::onAddress({interface, protocol}, event, addressIn(record), lookup);
}

// Left alone, the library writes all it notices to the standard error output.
void logForDebugging(AvahiLogLevel, const char* text) {
    qCDebug(avahiLog, "%s", text);
}

void ignoreState(AvahiServer*, AvahiServerState, void*) {}

AvahiServerConfig askingOnly() {
    AvahiServerConfig config;
    avahi_server_config_init(&config);
    config.disable_publishing = 1;
    config.publish_hinfo = 0;
    config.publish_addresses = 0;
    config.publish_workstation = 0;
    config.publish_domain = 0;
    config.enable_wide_area = 0;
    config.disallow_other_stacks = 0;
    return config;
}

// Starts what was prepared for the lookup; no lookup when the question was refused. (The library's
// shorter "new" functions abort the process on a refused question.)
template <auto startObject, class Lookup, class Object>
std::unique_ptr<AvahiLookup> started(std::unique_ptr<Lookup> lookup, Object* object) {
    if (!object)
        return nullptr;
    lookup->own(object);
    startObject(object);
    return lookup;
}

} // namespace

std::unique_ptr<AvahiEmbeddedBackend> AvahiEmbeddedBackend::create(const AvahiPoll* poll) {
    avahi_set_log_function(logForDebugging);
    AvahiServerConfig config = askingOnly();
    int error = 0;
    AvahiServer* server = avahi_server_new(poll, &config, ignoreState, nullptr, &error);
    avahi_server_config_free(&config);
    if (!server)
        return nullptr;
    return std::unique_ptr<AvahiEmbeddedBackend>(new AvahiEmbeddedBackend(server));
}

std::unique_ptr<AvahiLookup> AvahiEmbeddedBackend::ask(const AvahiQuestion& question,
                                                       Listener listener) {
    return std::visit([&](const auto& asked) { return start(asked, std::move(listener)); },
                      question);
}

std::unique_ptr<AvahiLookup> AvahiEmbeddedBackend::start(const SearchQuestion& question,
                                                         Listener listener) {
    auto lookup = std::make_unique<SearchLookup>(std::move(listener));
    auto* object = avahi_s_service_browser_prepare(
        m_server.get(), AVAHI_IF_UNSPEC, AVAHI_PROTO_UNSPEC, question.type.constData(),
        question.domain.constData(), AvahiLookupFlags{}, SearchLookup::onService, lookup.get());
    return started<avahi_s_service_browser_start>(std::move(lookup), object);
}

std::unique_ptr<AvahiLookup> AvahiEmbeddedBackend::start(const PlaceQuestion& question,
                                                         Listener listener) {
    auto lookup = std::make_unique<PlaceLookup>(std::move(listener));
    const auto flags = static_cast<AvahiLookupFlags>(AVAHI_LOOKUP_NO_TXT | AVAHI_LOOKUP_NO_ADDRESS);
    auto* object = avahi_s_service_resolver_prepare(
        m_server.get(), AVAHI_IF_UNSPEC, AVAHI_PROTO_UNSPEC, question.name.constData(),
        question.type.constData(), question.domain.constData(), AVAHI_PROTO_UNSPEC, flags,
        PlaceLookup::onPlace, lookup.get());
    return started<avahi_s_service_resolver_start>(std::move(lookup), object);
}

std::unique_ptr<AvahiLookup> AvahiEmbeddedBackend::start(const AddressQuestion& question,
                                                         Listener listener) {
    auto lookup = std::make_unique<AddressLookup>(std::move(listener));
    const std::unique_ptr<AvahiKey, decltype(&avahi_key_unref)> key(
        avahi_key_new(question.hostName.constData(), AVAHI_DNS_CLASS_IN,
                      recordTypeOf(question.family)),
        avahi_key_unref);
    if (!key)
        return nullptr;
    auto* object = avahi_s_record_browser_prepare(
        m_server.get(), AVAHI_IF_UNSPEC, AVAHI_PROTO_UNSPEC, key.get(), AVAHI_LOOKUP_USE_MULTICAST,
        onRecord, lookup.get());
    return started<avahi_s_record_browser_start_query>(std::move(lookup), object);
}

} // namespace quiv
