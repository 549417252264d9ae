#pragma once

#include "platform/avahi/avahi_answers.h"
#include "platform/avahi/avahi_seen_services.h"
#include "platform/service_browser.h"

#include <memory>

namespace quiv {

// DNS-SD through Avahi. Owns its search; its requests see when it goes.
class AvahiServiceBrowser final : public ServiceBrowser {
public:
    explicit AvahiServiceBrowser(std::shared_ptr<AvahiConnection> connection);
    ~AvahiServiceBrowser() override;

    void search(const QString& type, const QString& domain, FoundCallback found) override;
    void stop() override;
    Task<std::optional<ResolvedService>> resolve(FoundService service,
                                                 std::chrono::milliseconds timeout) override;

private:
    void onAnswer(const AvahiAnswer& answer);

    std::shared_ptr<AvahiScope> m_scope;
    FoundCallback m_found;
    AvahiSeenServices m_seen;
    AvahiAsking m_search;
};

} // namespace quiv
