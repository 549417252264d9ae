#pragma once

#include <QString>
#include <QStringList>

namespace quiv::simulator {

// The address to tell a person: the first of this machine's IPv4 addresses that others can reach,
// else the loopback address.
QString reachableIpv4Address();
// This machine's IPv6 addresses but for link-local ones; the loopback address only if there is no
// other.
QStringList ipv6Addresses();

} // namespace quiv::simulator
