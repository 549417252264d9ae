#include "simulator/raw_exchange.h"

#include <QElapsedTimer>

#include <algorithm>
#include <cerrno>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace quiv::simulator {

RawExchange::RawExchange(quint16 port, const QByteArray& path, qint64 announcedBytes)
    : m_socket(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    connect(m_socket, reinterpret_cast<sockaddr*>(&address), sizeof(address));
    const QByteArray rest = announcedBytes > 0
                                ? "Content-Length: " + QByteArray::number(announcedBytes)
                                : QByteArray("Connection: close");
    const QByteArray request = (announcedBytes > 0 ? "PUT /" : "GET /") + path +
                               " HTTP/1.1\r\nHost: tv\r\n" + rest + "\r\n\r\n";
    send(m_socket, request.constData(), static_cast<size_t>(request.size()), MSG_NOSIGNAL);
}

RawExchange::~RawExchange() {
    close(m_socket);
}

void RawExchange::read(int silenceMs) {
    for (;;) {
        QElapsedTimer pause;
        pause.start();
        pollfd watched{m_socket, POLLIN, 0};
        if (poll(&watched, 1, silenceMs) == 0) {
            peerWasSilent = true;
            return;
        }
        longestPauseMs = std::max(longestPauseMs, static_cast<int>(pause.elapsed()));
        char buffer[64 * 1024];
        const ssize_t size = recv(m_socket, buffer, sizeof(buffer), 0);
        wasReset = size < 0 && errno == ECONNRESET;
        if (size <= 0)
            return;
        received.append(buffer, size);
        ++pieces;
    }
}

QByteArray RawExchange::body() const {
    const qsizetype end = received.indexOf("\r\n\r\n");
    return end < 0 ? QByteArray() : received.mid(end + 4);
}

} // namespace quiv::simulator
