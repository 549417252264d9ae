#include "simulator/announcing/network_addresses.h"

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <net/if.h>
#include <netinet/in.h>

#include <memory>

namespace quiv::simulator {

using namespace Qt::StringLiterals;

namespace {

QString textOf(int family, const void* address) {
    char text[INET6_ADDRSTRLEN] = {};
    return QString::fromLatin1(inet_ntop(family, address, text, sizeof(text)));
}

QString textOf(const sockaddr* address, int family) {
    if (!address || address->sa_family != family)
        return {};
    if (family == AF_INET)
        return textOf(family, &reinterpret_cast<const sockaddr_in*>(address)->sin_addr);
    const in6_addr& ipv6 = reinterpret_cast<const sockaddr_in6*>(address)->sin6_addr;
    return IN6_IS_ADDR_LINKLOCAL(&ipv6) ? QString() : textOf(family, &ipv6);
}

std::vector<InterfaceAddress> findAddresses(int family, bool loopback) {
    ifaddrs* first = nullptr;
    if (getifaddrs(&first) != 0)
        return {};
    const std::unique_ptr<ifaddrs, decltype(&freeifaddrs)> owner(first, freeifaddrs);
    std::vector<InterfaceAddress> found;
    for (const ifaddrs* entry = first; entry; entry = entry->ifa_next) {
        const QString text = textOf(entry->ifa_addr, family);
        const bool isLoopback = entry->ifa_flags & IFF_LOOPBACK;
        if (!text.isEmpty() && (entry->ifa_flags & IFF_UP) && isLoopback == loopback)
            found.push_back({text, static_cast<int>(if_nametoindex(entry->ifa_name))});
    }
    return found;
}

} // namespace

std::vector<InterfaceAddress> reachableAddresses(AddressFamily family) {
    const int number = family == AddressFamily::Ipv4 ? AF_INET : AF_INET6;
    const auto found = findAddresses(number, false);
    return found.empty() ? findAddresses(number, true) : found;
}

QString firstAddress(AddressFamily family) {
    const auto found = reachableAddresses(family);
    if (!found.empty())
        return found.front().text;
    return family == AddressFamily::Ipv4 ? u"127.0.0.1"_s : u"::1"_s;
}

} // namespace quiv::simulator
