#pragma once

#include "platform/clock.h"
#include "platform/service_browser.h"

#include <QHash>

namespace quiv {

using namespace Qt::StringLiterals;

// A local network whose announcements the test makes. Services resolve to what the test has put
// into `services`, from the clock's next turn; those it has not never do.
class FakeServiceBrowser final : public ServiceBrowser {
public:
    explicit FakeServiceBrowser(Clock& clock) : m_clock(clock) {}

    void search(const QString& type, const QString& domain, FoundCallback found) override {
        searches.append(type + u' ' + domain);
        m_found = std::move(found);
    }
    void stop() override { m_found = nullptr; }

    Task<std::optional<ResolvedService>> resolve(FoundService service,
                                                 std::chrono::milliseconds timeout) override {
        const bool isKnown = services.contains(service.name);
        const auto delay = isKnown ? std::chrono::milliseconds(0) : timeout;
        co_await sleepFor(m_clock, delay);
        if (!isKnown)
            co_return std::nullopt;
        co_return services.value(service.name);
    }

    void announce(const ResolvedService& service) {
        services.insert(service.name, service);
        if (m_found)
            m_found({service.name, u"_ombra._tcp"_s, u"local"_s});
    }

    QHash<QString, ResolvedService> services;
    QStringList searches;

private:
    Clock& m_clock;
    FoundCallback m_found;
};

inline ResolvedService serviceAt(const QString& name, std::array<std::uint8_t, 4> ipv4, int port) {
    HostAddress address;
    std::ranges::copy(ipv4, address.bytes.begin());
    return {name, {address}, u"tv.local."_s, port};
}

} // namespace quiv
