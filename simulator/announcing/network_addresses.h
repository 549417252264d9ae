#pragma once

#include <QString>

#include <vector>

namespace quiv::simulator {

struct InterfaceAddress {
    QString text;
    int interfaceIndex = 0;
};

enum class AddressFamily { Ipv4, Ipv6 };

// This machine's addresses that others can reach: no link-local ones, and loopback addresses only
// if there is no other.
std::vector<InterfaceAddress> reachableAddresses(AddressFamily family);
// Returns the first of them, or the loopback address.
QString firstAddress(AddressFamily family);

} // namespace quiv::simulator
