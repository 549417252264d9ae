#include "platform/avahi/avahi_lookup.h"

#include <algorithm>
#include <cstring>

namespace quiv {

namespace {

bool isLinkLocal(const AvahiIPv6Address& address) {
    return address.address[0] == 0xfe && (address.address[1] & 0xc0) == 0x80;
}

} // namespace

HostAddress fromAvahi(const AvahiAddress& address, AvahiIfIndex interface) {
    HostAddress result;
    if (address.proto == AVAHI_PROTO_INET) {
        std::memcpy(result.bytes.data(), &address.data.ipv4.address, 4);
        return result;
    }
    result.family = HostAddress::Family::IPv6;
    std::ranges::copy(address.data.ipv6.address, result.bytes.begin());
    if (isLinkLocal(address.data.ipv6) && interface > 0)
        result.scope = static_cast<unsigned>(interface);
    return result;
}

std::uint16_t recordTypeOf(HostAddress::Family family) {
    return family == HostAddress::Family::IPv4 ? AVAHI_DNS_TYPE_A : AVAHI_DNS_TYPE_AAAA;
}

} // namespace quiv
