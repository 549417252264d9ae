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
    if (m_entries.size() >= maximumSize)
        m_entries.clear();
    m_entries.insert_or_assign(hostName, Entry{address, now + lifetime});
}

} // namespace quiv
