#pragma once

#include <QList>
#include <QString>

namespace quiv {

// A way of this computer to a network, without its addresses.
struct NetworkInterface {
    QString name; // as the system numbers them: "eth0", "wlan0"
    bool isLoopback = false;
    bool isPointToPoint = false; // such as a tunnel
    bool isUp = false;           // and connected
    bool canMulticast = false;
    bool hasIpv4 = false;
    bool hasIpv6 = false;

    bool operator==(const NetworkInterface&) const = default;
};

// In the system's order.
QList<NetworkInterface> networkInterfaces();

} // namespace quiv
