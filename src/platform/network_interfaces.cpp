#include "platform/network_interfaces.h"

#include <algorithm>
#include <ifaddrs.h>
#include <linux/if.h>
#include <sys/socket.h>

namespace quiv {

QList<NetworkInterface> networkInterfaces() {
    ifaddrs* entries = nullptr;
    if (::getifaddrs(&entries) != 0)
        return {};
    QList<NetworkInterface>
        found; // one for each name, of which the system gives an entry an address
    for (const ifaddrs* entry = entries; entry; entry = entry->ifa_next) {
        const QString name = QString::fromLocal8Bit(entry->ifa_name);
        auto known = std::ranges::find(found, name, &NetworkInterface::name);
        if (known == found.end()) {
            found.append({.name = name});
            known = found.end() - 1;
        }
        const unsigned flags = entry->ifa_flags;
        known->isLoopback = flags & IFF_LOOPBACK;
        known->isPointToPoint = flags & IFF_POINTOPOINT;
        known->isUp = (flags & IFF_UP) && (flags & IFF_RUNNING);
        known->canMulticast = flags & IFF_MULTICAST;
        const int family = entry->ifa_addr ? entry->ifa_addr->sa_family : AF_UNSPEC;
        known->hasIpv4 |= family == AF_INET;
        known->hasIpv6 |= family == AF_INET6;
    }
    ::freeifaddrs(entries);
    return found;
}

} // namespace quiv
