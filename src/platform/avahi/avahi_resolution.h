#pragma once

#include "platform/avahi/avahi_backend.h"
#include "platform/clock.h"
#include "platform/service_browser.h"

#include <optional>
#include <vector>

namespace quiv {

// What the answers about one service add up to: its place, once host, port and an address are known
// and have settled. A place that equals `known` is no outcome.
class AvahiResolution {
public:
    // Time for more addresses of a service that was not known before, and of one that was: there,
    // an address that is missing may only not have been answered yet.
    static constexpr std::chrono::milliseconds settling{50};
    static constexpr std::chrono::milliseconds settlingOfKnown{1000};
    // Time for an IPv4 address when there is an IPv6 address.
    static constexpr std::chrono::milliseconds graceForIPv4{700};
    static constexpr std::size_t maximumAddresses = 16; // a home has a few; the rest is noise

    AvahiResolution(QString name, std::optional<ResolvedService> known, Clock::Instant deadline);

    void take(const AvahiAnswer& answer, Clock::Instant now);

    // The host whose addresses are wanted; empty if it is not known yet.
    const QString& hostName() const { return m_place.hostName; }
    // Where the service is, if that can be said by now.
    std::optional<ResolvedService> outcome(Clock::Instant now) const;
    // When to look at outcome() again although no answer came.
    Clock::Instant deadline() const;

private:
    void note(const AvahiAnswer& answer);
    // What is known by now, settled or not.
    std::optional<ResolvedService> place() const;
    bool hasNews() const;

    QString m_name;
    std::optional<ResolvedService> m_known;
    Clock::Instant m_deadline;
    Clock::Instant m_settledAt{};
    ServicePlace m_place{{}, 0};
    std::vector<AddressAppeared> m_addresses;
};

} // namespace quiv
