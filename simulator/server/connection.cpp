#include "simulator/server/connection.h"

#include <QDir>

#include <linux/sockios.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

#include <functional>

namespace quiv::simulator {

using namespace Qt::StringLiterals;

namespace {

constexpr std::chrono::milliseconds LeavingTime{2000};

} // namespace

namespace {

using Address = sockaddr_storage;
using NameFunction = int (*)(int, sockaddr*, socklen_t*);

// Port and textual address of one end of a connection; the port is 0 if there is no connection.
struct EndPoint {
    int port = 0;
    std::string host;
};

} // namespace

namespace {

EndPoint endPointOf(int descriptor, NameFunction nameOf) {
    Address address{};
    socklen_t length = sizeof(address);
    if (nameOf(descriptor, reinterpret_cast<sockaddr*>(&address), &length) != 0)
        return {};
    if (address.ss_family != AF_INET && address.ss_family != AF_INET6)
        return {};
    char host[NI_MAXHOST] = {};
    char port[NI_MAXSERV] = {};
    if (getnameinfo(reinterpret_cast<sockaddr*>(&address), length, host, sizeof(host), port,
                    sizeof(port), NI_NUMERICHOST | NI_NUMERICSERV) != 0)
        return {};
    return {std::atoi(port), host};
}

// Calls `visit` for each open descriptor until it returns true, and gives back that descriptor.
int findDescriptor(const std::function<bool(int)>& visit) {
    const QStringList names =
        QDir(u"/proc/self/fd"_s).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot);
    for (const QString& name : names) {
        const int descriptor = name.toInt();
        if (visit(descriptor))
            return descriptor;
    }
    return -1;
}

} // namespace

Connection::Connection(const httplib::Request& request)
    : m_descriptor(findDescriptor([&](int descriptor) {
          const EndPoint peer = endPointOf(descriptor, getpeername);
          return peer.port == request.remote_port && peer.host == request.remote_addr &&
                 endPointOf(descriptor, getsockname).port == request.local_port;
      })) {}

namespace {

// Dissolving the association resets a connection immediately and leaves the descriptor to the
// server library, which closes it as usual.
void dissolve(int descriptor) {
    sockaddr address{};
    address.sa_family = AF_UNSPEC;
    static_cast<void>(connect(descriptor, &address, sizeof(address)));
}

} // namespace

void Connection::reset() {
    dissolve(m_descriptor);
}

void Connection::end(const StopSignal& stop) {
    shutdown(m_descriptor, SHUT_WR);
    waitFor(LeavingTime, stop);
    reset();
}

void Connection::waitUntilDelivered() const {
    for (int attempt = 0; attempt < 1000; ++attempt) {
        int unsent = 0;
        if (ioctl(m_descriptor, SIOCOUTQ, &unsent) != 0 || unsent == 0)
            return;
        poll(nullptr, 0, 2);
    }
}

namespace {

// Returns 0 when time is up, and more when the peer left or the program ends.
int waitForEnd(int descriptor, const StopSignal& stop, int milliseconds) {
    pollfd watched[] = {{stop.descriptor(), POLLIN, 0}, {descriptor, POLLRDHUP, 0}};
    return poll(watched, 2, milliseconds);
}

} // namespace

bool Connection::waitFor(std::chrono::milliseconds time, const StopSignal& stop) const {
    return m_descriptor >= 0 && waitForEnd(m_descriptor, stop, static_cast<int>(time.count())) == 0;
}

void Connection::waitUntilGone(const StopSignal& stop) const {
    if (m_descriptor >= 0)
        waitForEnd(m_descriptor, stop, -1);
}

void resetConnections(quint16 localPort) {
    findDescriptor([&](int descriptor) {
        const bool isConnected = endPointOf(descriptor, getpeername).port != 0;
        if (isConnected && endPointOf(descriptor, getsockname).port == localPort)
            dissolve(descriptor);
        return false;
    });
}

void shutDownConnections(quint16 localPort) {
    findDescriptor([&](int descriptor) {
        if (endPointOf(descriptor, getsockname).port == localPort)
            shutdown(descriptor, SHUT_RDWR);
        return false;
    });
}

} // namespace quiv::simulator
