#pragma once

#include "platform/async/promise.h"
#include "platform/clock.h"
#include "platform/service_browser.h"

#include <QHash>

#include <utility>
#include <vector>

namespace quiv {

using namespace Qt::StringLiterals;

// A local network whose announcements the test makes. Services resolve to what the test has put
// into `services`, from the clock's next turn; those it has not do once it has.
class FakeServiceBrowser final : public ServiceBrowser {
public:
    explicit FakeServiceBrowser(Clock& clock) : m_clock(clock) {}

    void search(const QString& type, const QString& domain, FoundCallback found,
                FoundCallback lost) override {
        searches.append(type + u' ' + domain);
        m_found = std::move(found);
        m_lost = std::move(lost);
    }
    void stop() override { m_found = m_lost = nullptr; }

    Task<std::optional<ResolvedService>> resolve(FoundService service, std::chrono::milliseconds,
                                                 std::optional<ResolvedService> known) override {
        while (!services.contains(service.name) || services.value(service.name) == known) {
            const Promise<bool> change;
            m_changes.push_back(change);
            co_await change.wait();
        }
        co_await sleepFor(m_clock, std::chrono::milliseconds(0));
        co_return services.value(service.name);
    }

    void announce(const ResolvedService& service) {
        announceName(service.name);
        move(service);
    }
    // The service is there, but nobody knows where.
    void announceName(const QString& name) { call(m_found, name); }
    // The service is, or is known to be, at this place.
    void move(const ResolvedService& service) {
        services.insert(service.name, service);
        for (const Promise<bool>& change : std::exchange(m_changes, {}))
            change.resolveNow(true);
    }
    void withdraw(const QString& name) { call(m_lost, name); }

    QHash<QString, ResolvedService> services;
    QStringList searches;

private:
    static void call(const FoundCallback& callback, const QString& name) {
        if (callback)
            callback({name, u"_ombra._tcp"_s, u"local"_s});
    }

    Clock& m_clock;
    FoundCallback m_found;
    FoundCallback m_lost;
    std::vector<Promise<bool>> m_changes; // what the unresolved wait for
};

inline ResolvedService serviceAt(const QString& name, std::array<std::uint8_t, 4> ipv4, int port) {
    HostAddress address;
    std::ranges::copy(ipv4, address.bytes.begin());
    return {name, {address}, u"tv.local."_s, port};
}

} // namespace quiv
