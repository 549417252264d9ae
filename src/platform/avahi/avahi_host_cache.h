#pragma once

#include "platform/clock.h"
#include "platform/host_address.h"

#include <QByteArray>
#include <cstddef>
#include <map>
#include <optional>

namespace quiv {

// Addresses of hosts: those that services were resolved to until told otherwise, others for a
// minute.
class AvahiHostCache {
public:
    static constexpr std::chrono::seconds lifetime{60};
    static constexpr std::size_t maximumSize = 512; // a home has a few; the rest is noise

    std::optional<HostAddress> find(const QByteArray& hostName, Clock::Instant now) const;
    void remember(const QByteArray& hostName, const HostAddress& address, Clock::Instant now);
    void keep(const QByteArray& hostName, const HostAddress& address);
    void forget(const QByteArray& hostName) { m_entries.erase(hostName); }
    std::size_t size() const { return m_entries.size(); }

private:
    struct Entry {
        HostAddress address;
        Clock::Instant until;
    };

    void put(const QByteArray& hostName, const Entry& entry);

    std::map<QByteArray, Entry> m_entries;
};

} // namespace quiv
