#include "platform/host_address.h"

#include <arpa/inet.h>

namespace quiv {

QString HostAddress::toText() const {
    std::array<char, INET6_ADDRSTRLEN> text{};
    const int addressFamily = family == Family::IPv4 ? AF_INET : AF_INET6;
    inet_ntop(addressFamily, bytes.data(), text.data(), text.size());
    return QString::fromLatin1(text.data());
}

} // namespace quiv
