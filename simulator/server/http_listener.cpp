#include "simulator/server/http_listener.h"

#include "simulator/server/connection.h"

#include <condition_variable>
#include <mutex>

namespace quiv::simulator {

namespace {

// A thread per connection: any number of requests may hang without holding up the others.
class ConnectionThreads final : public httplib::TaskQueue {
public:
    explicit ConnectionThreads(const quint16& port) : m_port(port) {}

    void enqueue(std::function<void()> serveConnection) override {
        {
            const std::scoped_lock lock(m_mutex);
            ++m_running;
        }
        std::thread([this, serve = std::move(serveConnection)] {
            serve();
            const std::scoped_lock lock(m_mutex);
            --m_running;
            m_ended.notify_all();
        }).detach();
    }

    void shutdown() override {
        std::unique_lock lock(m_mutex);
        // Again and again, since a thread may have been between two reads.
        while (m_running > 0) {
            shutDownConnections(m_port);
            m_ended.wait_for(lock, std::chrono::milliseconds(50));
        }
    }

private:
    const quint16& m_port;
    std::mutex m_mutex;
    std::condition_variable m_ended;
    int m_running = 0;
};

} // namespace

HttpListener::HttpListener() {
    m_server.new_task_queue = [this] {
        return new ConnectionThreads(m_port);
    };
    m_server.set_keep_alive_max_count(1'000'000);
    m_server.set_keep_alive_timeout(30);
    m_server.set_tcp_nodelay(true);
    // A client that pauses for a while is still there.
    m_server.set_read_timeout(30);
    m_server.set_write_timeout(30);
    // Not the library's own choice, which lets two programs share a port.
    m_server.set_socket_options([](int descriptor) {
        const int yes = 1;
        setsockopt(descriptor, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof(yes));
    });
}

HttpListener::~HttpListener() {
    stop();
}

bool HttpListener::listen(const QString& address, quint16 port) {
    const std::string host = address.toStdString();
    if (port == 0) {
        const int chosen = m_server.bind_to_any_port(host);
        if (chosen <= 0)
            return false;
        m_port = static_cast<quint16>(chosen);
    } else if (m_server.bind_to_port(host, port)) {
        m_port = port;
    } else {
        return false;
    }
    m_server.widenBacklog();
    m_thread = std::thread([this] {
        m_server.listen_after_bind();
        m_ended = true;
    });
    return true;
}

void HttpListener::stop() {
    if (!m_thread.joinable())
        return;
    // Stopping a server that has not come round to listening yet does nothing.
    while (!m_server.is_running() && !m_ended)
        std::this_thread::yield();
    m_server.stop();
    m_thread.join();
}

} // namespace quiv::simulator
