#pragma once

#include "platform/avahi/avahi_backend.h"

#include <chrono>
#include <functional>
#include <future>
#include <map>
#include <memory>
#include <thread>

namespace quiv {

class AvahiConnection;
class AvahiWorker;

// Keeps a question asked; destroying it drops the question, and nothing is called back any more.
class AvahiSubscription {
public:
    AvahiSubscription() = default;
    AvahiSubscription(std::weak_ptr<AvahiConnection> connection, AvahiQuestionId id)
        : m_connection(std::move(connection)), m_id(id) {}
    AvahiSubscription(AvahiSubscription&& other) noexcept = default;
    AvahiSubscription& operator=(AvahiSubscription&& other) noexcept;
    ~AvahiSubscription();

private:
    void drop();

    std::weak_ptr<AvahiConnection> m_connection;
    AvahiQuestionId m_id = 0;
};

// The one way of this process to Avahi, shared by all who ask: make it with std::make_shared. Owns
// the Avahi thread, so that nothing here waits for the network or for a daemon that hangs.
//
// Main thread only; answers come from the event loop. Destroying it ends the thread; a thread that
// waits for a daemon that hangs is left behind to end by itself and touches nothing of ours.
class AvahiConnection : public std::enable_shared_from_this<AvahiConnection> {
public:
    using Callback = std::function<void(const AvahiAnswer&)>;

    // How often to look again for a bus that cannot be reached.
    explicit AvahiConnection(std::chrono::milliseconds retryInterval = std::chrono::seconds(30));
    ~AvahiConnection();
    AvahiConnection(const AvahiConnection&) = delete;
    AvahiConnection& operator=(const AvahiConnection&) = delete;

    // Calls back until the result is destroyed, which the callback may do. A question stays asked
    // across changes of the backend and repeats its answers then, after AskedAnew.
    AvahiSubscription ask(AvahiQuestion question, Callback callback);

    // Who answers now.
    AvahiBackendKind backendKind() const;
    // Called from the event loop when that was decided anew.
    void setBackendListener(std::function<void()> listener) { m_listener = std::move(listener); }

private:
    friend class AvahiSubscription;

    void dispatch(AvahiQuestionId id, const AvahiAnswer& answer);
    void drop(AvahiQuestionId id);

    std::map<AvahiQuestionId, std::shared_ptr<const Callback>> m_callbacks;
    AvahiQuestionId m_lastId = 0;
    std::function<void()> m_listener;
    std::shared_ptr<const void> m_token = std::make_shared<char>(); // expires with the connection
    std::shared_ptr<AvahiWorker> m_worker;
    std::thread m_thread;
    std::future<void> m_threadEnded;
};

} // namespace quiv
