#pragma once

#include "platform/avahi/avahi_answers.h"
#include "platform/avahi/avahi_host_cache.h"
#include "platform/host_resolver.h"

#include <memory>

namespace quiv {

// Host names of the local network through Avahi. Its requests see when it goes.
class AvahiHostResolver final : public HostResolver {
public:
    explicit AvahiHostResolver(std::shared_ptr<AvahiConnection> connection);
    ~AvahiHostResolver() override;

    Task<std::optional<HostAddress>> resolve(QString hostName,
                                             std::chrono::milliseconds timeout) override;
    void forget(const QString& hostName) override;

private:
    std::shared_ptr<AvahiScope> m_scope;
    std::shared_ptr<AvahiHostCache> m_cache; // also written by requests that end after this
};

} // namespace quiv
