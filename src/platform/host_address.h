#pragma once

#include <QString>
#include <array>
#include <cstdint>

namespace quiv {

// A numeric network address, independent of any network library.
struct HostAddress {
    enum class Family { IPv4, IPv6 };

    Family family = Family::IPv4;
    std::array<std::uint8_t, 16> bytes{}; // network order; IPv4 uses the first four
    unsigned scope = 0;                   // interface index of a link-local IPv6 address, else 0

    // "192.168.1.7" or "fe80::1": the address alone, as brackets and scope depend on where it goes.
    QString toText() const;

    bool operator==(const HostAddress&) const = default;
};

} // namespace quiv
