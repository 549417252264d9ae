#include "platform/system_changes.h"

#include <QDBusConnection>

#include <array>
#include <ifaddrs.h>
#include <linux/if.h>
#include <linux/rtnetlink.h>
#include <netdb.h>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

using namespace Qt::StringLiterals;

namespace quiv {

namespace {

socklen_t sizeOf(const sockaddr& address) {
    return address.sa_family == AF_INET ? sizeof(sockaddr_in) : sizeof(sockaddr_in6);
}

// "eth0 192.168.1.7" for every address of an interface that is up and has a link.
std::set<std::string> usableAddresses() {
    ifaddrs* interfaces = nullptr;
    if (::getifaddrs(&interfaces) != 0)
        return {};
    std::set<std::string> addresses;
    for (const ifaddrs* each = interfaces; each; each = each->ifa_next) {
        const sockaddr* address = each->ifa_addr;
        const bool isUsable = (each->ifa_flags & IFF_UP) && (each->ifa_flags & IFF_RUNNING);
        if (!isUsable || !address ||
            (address->sa_family != AF_INET && address->sa_family != AF_INET6))
            continue;
        std::array<char, NI_MAXHOST> text{};
        if (::getnameinfo(address, sizeOf(*address), text.data(), text.size(), nullptr, 0,
                          NI_NUMERICHOST) == 0)
            addresses.insert(std::string(each->ifa_name) + ' ' + text.data());
    }
    ::freeifaddrs(interfaces);
    return addresses;
}

// A socket on which the kernel tells of links and addresses; negative if there is none.
int openAddressNews() {
    const int socket = ::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC | SOCK_NONBLOCK, NETLINK_ROUTE);
    sockaddr_nl address{};
    address.nl_family = AF_NETLINK;
    address.nl_groups = RTMGRP_LINK | RTMGRP_IPV4_IFADDR | RTMGRP_IPV6_IFADDR;
    if (socket >= 0 && ::bind(socket, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0)
        return socket;
    if (socket >= 0)
        ::close(socket);
    return -1;
}

} // namespace

SystemChanges::SystemChanges(QObject* parent) : QObject(parent), m_interfaces(networkInterfaces()) {
    watchAddresses();
    // From the event loop, as the first use of a bus takes a while.
    QMetaObject::invokeMethod(this, "watchSleep", Qt::QueuedConnection);
}

SystemChanges::~SystemChanges() {
    m_notifier.reset();
    if (m_socket >= 0)
        ::close(m_socket);
}

void SystemChanges::watchSleep() {
    QDBusConnection bus = QDBusConnection::systemBus();
    if (!bus.isConnected())
        return;
    bus.connect(u"org.freedesktop.login1"_s, u"/org/freedesktop/login1"_s,
                u"org.freedesktop.login1.Manager"_s, u"PrepareForSleep"_s, this,
                SLOT(onPrepareForSleep(bool)));
}

void SystemChanges::onPrepareForSleep(bool begins) {
    if (!begins)
        Q_EMIT networkChanged();
}

void SystemChanges::watchAddresses() {
    m_socket = openAddressNews();
    if (m_socket < 0)
        return;
    m_interfaces = networkInterfaces();
    m_addresses = usableAddresses();
    m_notifier = std::make_unique<QSocketNotifier>(m_socket, QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &SystemChanges::onAddressNews);
}

// What the news say is not read: most repeat what is known, such as an address that was renewed.
void SystemChanges::onAddressNews() {
    std::array<char, 16 << 10> ignored{};
    while (::recv(m_socket, ignored.data(), ignored.size(), 0) > 0) {
    }
    auto interfaces = networkInterfaces();
    if (std::exchange(m_interfaces, interfaces) != interfaces)
        Q_EMIT interfacesChanged();
    auto addresses = usableAddresses();
    if (std::exchange(m_addresses, addresses) != addresses)
        Q_EMIT networkChanged();
}

} // namespace quiv
