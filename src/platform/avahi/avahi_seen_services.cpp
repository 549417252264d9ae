#include "platform/avahi/avahi_seen_services.h"

namespace quiv {

bool AvahiSeenServices::appeared(const ServiceAppeared& appearance) {
    if (m_paths.size() >= maximumSize && !m_paths.contains(appearance.service.name))
        return false;
    auto& paths = m_paths[appearance.service.name];
    const bool isNew = paths.empty();
    paths.insert(appearance.path);
    return isNew;
}

bool AvahiSeenServices::gone(const ServiceGone& departure) {
    const auto seen = m_paths.find(departure.service.name);
    if (seen == m_paths.end())
        return false;
    seen->second.erase(departure.path);
    if (!seen->second.empty())
        return false;
    m_paths.erase(seen);
    return true;
}

} // namespace quiv
