#include "platform/avahi/avahi_service_browser.h"

#include "platform/avahi/avahi_lookups.h"

namespace quiv {

namespace {

Task<std::optional<ResolvedService>> resolveService(std::shared_ptr<AvahiScope> scope,
                                                    FoundService service, Clock::Instant deadline) {
    auto placing = placeOf(scope, service, deadline);
    const std::optional<ServicePlace> place = co_await std::move(placing);
    if (!place)
        co_return std::nullopt;
    auto addressing = addressOf(scope, place->hostName.toUtf8(), deadline);
    const std::optional<HostAddress> address = co_await std::move(addressing);
    if (!address)
        co_return std::nullopt;
    co_return ResolvedService{service.name, {*address}, place->hostName, place->port};
}

} // namespace

AvahiServiceBrowser::AvahiServiceBrowser(std::shared_ptr<AvahiConnection> connection)
    : m_scope(std::make_shared<AvahiScope>(std::move(connection))) {}

AvahiServiceBrowser::~AvahiServiceBrowser() {
    stop();
    m_scope->close();
}

void AvahiServiceBrowser::search(const QString& type, const QString& domain, FoundCallback found) {
    stop();
    m_found = std::move(found);
    m_search =
        m_scope->connection()->ask(SearchQuestion{withoutOuterDots(type), withoutOuterDots(domain)},
                                   [this](const AvahiAnswer& answer) { onAnswer(answer); });
}

void AvahiServiceBrowser::stop() {
    m_search = {};
    m_found = {};
    m_seen.clear();
}

Task<std::optional<ResolvedService>>
AvahiServiceBrowser::resolve(FoundService service, std::chrono::milliseconds timeout) {
    return resolveService(m_scope, std::move(service), std::chrono::steady_clock::now() + timeout);
}

void AvahiServiceBrowser::onAnswer(const AvahiAnswer& answer) {
    if (const auto* departure = std::get_if<ServiceGone>(&answer))
        m_seen.gone(*departure);
    else if (std::holds_alternative<AskedAnew>(answer))
        m_seen.clear();
    const auto* appearance = std::get_if<ServiceAppeared>(&answer);
    if (!appearance || !m_seen.appeared(*appearance))
        return;
    const FoundCallback found = m_found; // it may search anew or destroy this browser
    found(appearance->service);
}

} // namespace quiv
