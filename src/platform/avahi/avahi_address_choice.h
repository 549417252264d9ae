#pragma once

#include "platform/clock.h"
#include "platform/host_address.h"

#include <optional>

namespace quiv {

// Chooses among a host's addresses as they come: the first IPv4 address at once, the first IPv6
// address when no IPv4 address came shortly after it.
class AvahiAddressChoice {
public:
    static constexpr std::chrono::milliseconds graceForIPv4{700};

    explicit AvahiAddressChoice(Clock::Instant deadline) : m_deadline(deadline) {}

    void add(const HostAddress& address, Clock::Instant now);

    // Whether waiting for more addresses is of no use.
    bool isFinal() const;
    // The time at which waiting ends.
    Clock::Instant deadline() const { return m_deadline; }
    const std::optional<HostAddress>& address() const { return m_address; }

private:
    Clock::Instant m_deadline;
    std::optional<HostAddress> m_address;
};

} // namespace quiv
