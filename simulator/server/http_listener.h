#pragma once

#include <httplib.h>

#include <QString>

#include <atomic>
#include <thread>

namespace quiv::simulator {

// An HTTP server on a thread of its own, each connection on another one. Set up `routes` before
// listening. stop() ends at once, whatever the connections are doing.
class HttpListener {
public:
    HttpListener();
    ~HttpListener();
    Q_DISABLE_COPY_MOVE(HttpListener)

    httplib::Server& routes() { return m_server; }

    // Port 0 takes a free one. Returns false if the port is taken.
    bool listen(const QString& address, quint16 port);
    quint16 port() const { return m_port; }
    void stop();

private:
    // The library's listening socket keeps five callers waiting and lets the sixth try again after
    // a second, which is too few for a client that opens connections in a burst.
    class Server final : public httplib::Server {
    public:
        void widenBacklog() { ::listen(svr_sock_, SOMAXCONN); }
    };

    Server m_server;
    std::thread m_thread;
    std::atomic<bool> m_ended = false;
    quint16 m_port = 0;
};

} // namespace quiv::simulator
