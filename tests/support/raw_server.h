#pragma once

#include <QByteArray>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <functional>
#include <thread>

namespace quiv {

// A TCP server on loopback that does to each connection, one after the other, what the test says:
// for servers that do not speak HTTP properly.
class RawServer {
public:
    // One accepted connection; closed when the handler returns.
    class Connection {
    public:
        explicit Connection(int descriptor) : m_descriptor(descriptor) {}
        ~Connection() { ::close(m_descriptor); }
        Connection(const Connection&) = delete;
        Connection& operator=(const Connection&) = delete;

        QByteArray readSome() {
            QByteArray bytes(64 << 10, Qt::Uninitialized);
            const auto count = ::recv(m_descriptor, bytes.data(), std::size_t(bytes.size()), 0);
            bytes.truncate(std::max<qsizetype>(count, 0));
            return bytes;
        }
        // Until the end of the headers.
        QByteArray readHeaders() {
            return readUntil([](const QByteArray& bytes) { return bytes.contains("\r\n\r\n"); });
        }
        QByteArray readUntil(const std::function<bool(const QByteArray&)>& isEnough) {
            QByteArray bytes;
            while (!isEnough(bytes)) {
                const QByteArray more = readSome();
                if (more.isEmpty())
                    break;
                bytes += more;
            }
            return bytes;
        }
        // Blocks until the client has closed.
        void awaitClose() {
            while (!readSome().isEmpty()) {
            }
        }
        void write(const QByteArray& bytes) {
            ::send(m_descriptor, bytes.constData(), std::size_t(bytes.size()), MSG_NOSIGNAL);
        }

    private:
        int m_descriptor;
    };

    using Handler = std::function<void(Connection&)>;

    explicit RawServer(Handler handler) : m_listener(::socket(AF_INET, SOCK_STREAM, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t length = sizeof address;
        auto* const generic = reinterpret_cast<sockaddr*>(&address);
        ::bind(m_listener, generic, length);
        ::listen(m_listener, 16);
        ::getsockname(m_listener, generic, &length);
        m_port = ntohs(address.sin_port);
        m_thread = std::thread([this, handler = std::move(handler)] {
            for (int client = ::accept(m_listener, nullptr, nullptr); client >= 0;
                 client = ::accept(m_listener, nullptr, nullptr)) {
                Connection connection(client);
                handler(connection);
                ++m_handled;
            }
        });
    }
    ~RawServer() {
        ::shutdown(m_listener, SHUT_RDWR);
        m_thread.join();
        ::close(m_listener);
    }
    RawServer(const RawServer&) = delete;
    RawServer& operator=(const RawServer&) = delete;

    int port() const { return m_port; }
    QByteArray url(const QByteArray& path = "/") const {
        return "http://127.0.0.1:" + QByteArray::number(m_port) + path;
    }
    int handledConnections() const { return m_handled; }

private:
    int m_listener;
    int m_port = 0;
    std::atomic<int> m_handled = 0;
    std::thread m_thread;
};

} // namespace quiv
