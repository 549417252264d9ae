#include "platform/avahi/avahi_host_cache.h"

namespace quiv {

std::optional<HostAddress> AvahiHostCache::find(const QByteArray& hostName,
                                                Clock::Instant now) const {
    const auto entry = m_entries.find(hostName);
    if (entry == m_entries.end() || entry->second.until <= now)
        return std::nullopt;
    return entry->second.address;
}

void AvahiHostCache::remember(const QByteArray& hostName, const HostAddress& address,
                              Clock::Instant now) {
    put(hostName, {address, now + lifetime});
}

void AvahiHostCache::keep(const QByteArray& hostName, const HostAddress& address) {
    put(hostName, {address, Clock::Instant::max()});
}

void AvahiHostCache::put(const QByteArray& hostName, const Entry& entry) {
    if (m_entries.size() >= maximumSize)
        m_entries.clear();
    m_entries.insert_or_assign(hostName, entry);
}

} // namespace quiv
