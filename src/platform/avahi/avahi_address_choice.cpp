#include "platform/avahi/avahi_address_choice.h"

#include <algorithm>

namespace quiv {

void AvahiAddressChoice::add(const HostAddress& address, Clock::Instant now) {
    if (address.family == HostAddress::Family::IPv4) {
        m_address = address;
    } else if (!m_address) {
        m_address = address;
        m_deadline = std::min(m_deadline, now + graceForIPv4);
    }
}

bool AvahiAddressChoice::isFinal() const {
    return m_address && m_address->family == HostAddress::Family::IPv4;
}

} // namespace quiv
