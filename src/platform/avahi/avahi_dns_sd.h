#pragma once

#include "platform/avahi/avahi_answers.h"
#include "platform/avahi/avahi_host_cache.h"
#include "platform/avahi/avahi_seen_services.h"
#include "platform/host_resolver.h"
#include "platform/service_browser.h"

#include <memory>

namespace quiv {

// DNS-SD and the host names of the local network, through Avahi. Requests that run when it is
// destroyed complete with nullopt.
class AvahiDnsSd final : public ServiceBrowser, public HostResolver {
public:
    explicit AvahiDnsSd(std::shared_ptr<AvahiConnection> connection);
    ~AvahiDnsSd() override;

    void search(const QString& type, const QString& domain, FoundCallback found,
                FoundCallback lost = {}) override;
    void stop() override;
    Task<std::optional<ResolvedService>>
    resolve(FoundService service, std::chrono::milliseconds timeout,
            std::optional<ResolvedService> known = std::nullopt) override;

    Task<std::optional<HostAddress>> resolve(QString hostName,
                                             std::chrono::milliseconds timeout) override;
    void forget(const QString& hostName) override;

private:
    void onAnswer(const AvahiAnswer& answer);

    std::shared_ptr<AvahiScope> m_scope;
    std::shared_ptr<AvahiHostCache> m_cache; // requests may write to it after the end of this
    FoundCallback m_found;
    FoundCallback m_lost;
    AvahiSeenServices m_seen;
    AvahiSubscription m_search;
};

} // namespace quiv
