#include "platform/avahi/avahi_dns_sd.h"

#include "platform/avahi/avahi_lookups.h"

namespace quiv {

namespace {

QByteArray normalized(const QString& hostName) {
    return withoutOuterDots(hostName).toLower();
}

Task<std::optional<HostAddress>> resolveHost(std::shared_ptr<AvahiScope> scope,
                                             std::shared_ptr<AvahiHostCache> cache,
                                             QByteArray hostName, Clock::Instant deadline) {
    if (!hostName.endsWith(".local"))
        co_return std::nullopt;
    const auto remembered = cache->find(hostName, std::chrono::steady_clock::now());
    if (remembered)
        co_return remembered;
    const std::optional<HostAddress> address = co_await addressOf(scope, hostName, deadline);
    if (address)
        cache->remember(hostName, *address, std::chrono::steady_clock::now());
    co_return address;
}

// Requests to the service go where it was found, without another look-up.
Task<std::optional<ResolvedService>>
placeToKeep(std::shared_ptr<AvahiScope> scope, std::shared_ptr<AvahiHostCache> cache,
            FoundService service, std::optional<ResolvedService> known, Clock::Instant deadline) {
    const std::optional<ResolvedService> place =
        co_await placeOf(scope, std::move(service), std::move(known), deadline);
    if (place && place->hostName && !place->addresses.isEmpty())
        cache->keep(normalized(*place->hostName), place->addresses.constFirst());
    co_return place;
}

} // namespace

AvahiDnsSd::AvahiDnsSd(std::shared_ptr<AvahiConnection> connection)
    : m_scope(std::make_shared<AvahiScope>(std::move(connection))),
      m_cache(std::make_shared<AvahiHostCache>()) {}

AvahiDnsSd::~AvahiDnsSd() {
    stop();
    m_scope->close();
}

void AvahiDnsSd::search(const QString& type, const QString& domain, FoundCallback found,
                        FoundCallback lost) {
    stop();
    m_found = std::move(found);
    m_lost = std::move(lost);
    m_search =
        m_scope->connection()->ask(SearchQuestion{withoutOuterDots(type), withoutOuterDots(domain)},
                                   [this](const AvahiAnswer& answer) { onAnswer(answer); });
}

void AvahiDnsSd::stop() {
    m_search = {};
    m_found = {};
    m_lost = {};
    m_seen.clear();
}

Task<std::optional<ResolvedService>> AvahiDnsSd::resolve(FoundService service,
                                                         std::chrono::milliseconds timeout,
                                                         std::optional<ResolvedService> known) {
    return placeToKeep(m_scope, m_cache, std::move(service), std::move(known),
                       std::chrono::steady_clock::now() + timeout);
}

Task<std::optional<HostAddress>> AvahiDnsSd::resolve(QString hostName,
                                                     std::chrono::milliseconds timeout) {
    return resolveHost(m_scope, m_cache, normalized(hostName),
                       std::chrono::steady_clock::now() + timeout);
}

void AvahiDnsSd::forget(const QString& hostName) {
    m_cache->forget(normalized(hostName));
}

// The callbacks are copied, because they may search anew or destroy this browser.
void AvahiDnsSd::onAnswer(const AvahiAnswer& answer) {
    if (std::holds_alternative<AskedAnew>(answer))
        m_seen.clear();
    const auto* departure = std::get_if<ServiceGone>(&answer);
    const auto* appearance = std::get_if<ServiceAppeared>(&answer);
    if (departure && m_seen.gone(*departure) && m_lost) {
        const FoundCallback lost = m_lost;
        lost(departure->service);
    } else if (appearance && m_seen.appeared(*appearance)) {
        const FoundCallback found = m_found;
        found(appearance->service);
    }
}

} // namespace quiv
