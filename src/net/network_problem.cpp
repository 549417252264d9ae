#include "net/network_problem.h"

#include <algorithm>

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

// A tunnel leads elsewhere, and loopback to this computer, where a TV is heard by multicast alone.
bool leadsToNeighbours(const NetworkInterface& each) {
    return each.isUp && !each.isPointToPoint && (!each.isLoopback || each.canMulticast);
}

bool hasAddress(const NetworkInterface& each) {
    return each.hasIpv4 || each.hasIpv6;
}

} // namespace

NetworkProblem networkProblem(const QList<NetworkInterface>& interfaces, bool canSearch) {
    QList<NetworkInterface> ways;
    std::ranges::copy_if(interfaces, std::back_inserter(ways), leadsToNeighbours);
    if (ways.isEmpty())
        return {u"This computer is not connected to a network"_s,
                u"Turn on Wi-Fi or plug in a network cable, and TVs will show up by themselves."_s};
    const QString name = ways.constFirst().name;
    ways.removeIf([](const NetworkInterface& each) { return !each.canMulticast; });
    if (ways.isEmpty())
        return {
            u"This network connection cannot find TVs"_s,
            u"Multicast is turned off for %1, and TVs announce themselves by it. Turn it on, or "
            "use another connection."_s.arg(name)};
    if (std::ranges::none_of(ways, hasAddress))
        return {u"This computer has no address in its network"_s,
                u"If it does not get one soon, connect again or restart the router."_s};
    if (!canSearch)
        return {u"TVs cannot be searched for"_s,
                u"The Avahi service does not run, and without it UDP port 5353 cannot be used. "
                "Start the service (avahi-daemon), or end the program that has the port."_s};
    return {};
}

} // namespace quiv
