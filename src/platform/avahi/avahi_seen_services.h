#pragma once

#include "platform/avahi/avahi_backend.h"

#include <map>
#include <set>

namespace quiv {

// The services that a search has seen and through which paths, to report each of them once.
class AvahiSeenServices {
public:
    static constexpr std::size_t maximumSize = 16'384; // further ones are not seen

    // Whether the service was not there before.
    bool appeared(const ServiceAppeared& appearance);
    // True when it went from its last path.
    bool gone(const ServiceGone& departure);
    void clear() { m_paths.clear(); }

private:
    std::map<QString, std::set<AnnouncementPath>> m_paths; // by the service's name
};

} // namespace quiv
