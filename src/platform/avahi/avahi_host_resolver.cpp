#include "platform/avahi/avahi_host_resolver.h"

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
    auto addressing = addressOf(scope, hostName, deadline);
    const std::optional<HostAddress> address = co_await std::move(addressing);
    if (address)
        cache->remember(hostName, *address, std::chrono::steady_clock::now());
    co_return address;
}

} // namespace

AvahiHostResolver::AvahiHostResolver(std::shared_ptr<AvahiConnection> connection)
    : m_scope(std::make_shared<AvahiScope>(std::move(connection))),
      m_cache(std::make_shared<AvahiHostCache>()) {}

AvahiHostResolver::~AvahiHostResolver() {
    m_scope->close();
}

Task<std::optional<HostAddress>> AvahiHostResolver::resolve(QString hostName,
                                                            std::chrono::milliseconds timeout) {
    return resolveHost(m_scope, m_cache, normalized(hostName),
                       std::chrono::steady_clock::now() + timeout);
}

void AvahiHostResolver::forget(const QString& hostName) {
    m_cache->forget(normalized(hostName));
}

} // namespace quiv
