#include "simulator/network_addresses.h"

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <net/if.h>
#include <netinet/in.h>

#include <memory>

namespace quiv::simulator {

namespace {

struct FoundAddresses {
    QStringList loopback;
    QStringList others;
};

} // namespace

static QString textOf(int family, const void* address) {
    char text[INET6_ADDRSTRLEN] = {};
    return QString::fromLatin1(inet_ntop(family, address, text, sizeof(text)));
}

static QString textOf(const sockaddr* address, int family) {
    if (!address || address->sa_family != family)
        return {};
    if (family == AF_INET)
        return textOf(family, &reinterpret_cast<const sockaddr_in*>(address)->sin_addr);
    const in6_addr& ipv6 = reinterpret_cast<const sockaddr_in6*>(address)->sin6_addr;
    return IN6_IS_ADDR_LINKLOCAL(&ipv6) ? QString() : textOf(family, &ipv6);
}

static FoundAddresses findAddresses(int family) {
    ifaddrs* first = nullptr;
    if (getifaddrs(&first) != 0)
        return {};
    const std::unique_ptr<ifaddrs, decltype(&freeifaddrs)> owner(first, freeifaddrs);
    FoundAddresses found;
    for (const ifaddrs* entry = first; entry; entry = entry->ifa_next) {
        const QString text = textOf(entry->ifa_addr, family);
        if (!text.isEmpty() && (entry->ifa_flags & IFF_UP))
            (entry->ifa_flags & IFF_LOOPBACK ? found.loopback : found.others).append(text);
    }
    return found;
}

QString reachableIpv4Address() {
    const FoundAddresses found = findAddresses(AF_INET);
    return found.others.value(0, QStringLiteral("127.0.0.1"));
}

QStringList ipv6Addresses() {
    const FoundAddresses found = findAddresses(AF_INET6);
    return found.others.isEmpty() ? found.loopback : found.others;
}

} // namespace quiv::simulator
