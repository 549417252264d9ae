#include "platform/avahi/avahi_connection.h"

#include "platform/async/threads.h"
#include "platform/avahi/avahi_worker.h"

#include <utility>

namespace quiv {

namespace {

// Ending is a matter of milliseconds, unless a call waits for a daemon that hangs.
constexpr std::chrono::seconds EndTimeout{1};

} // namespace

AvahiSubscription& AvahiSubscription::operator=(AvahiSubscription&& other) noexcept {
    if (this != &other) {
        drop();
        m_connection = std::move(other.m_connection);
        m_id = other.m_id;
    }
    return *this;
}

AvahiSubscription::~AvahiSubscription() {
    drop();
}

void AvahiSubscription::drop() {
    if (const auto connection = std::exchange(m_connection, {}).lock())
        connection->drop(m_id);
}

AvahiConnection::AvahiConnection(std::chrono::milliseconds retryInterval) {
    const auto deliver = [this, token = std::weak_ptr(m_token)](AvahiQuestionId id,
                                                                AvahiAnswer answer) {
        postToMainThread(token, [this, id, answer = std::move(answer)] { dispatch(id, answer); });
    };
    const auto tell = [this, token = std::weak_ptr(m_token)] {
        postToMainThread(token, [this] {
            if (m_listener)
                m_listener();
        });
    };
    m_worker = std::make_shared<AvahiWorker>(retryInterval, deliver, tell);
    std::packaged_task<void()> thread([worker = m_worker] { worker->run(); });
    m_threadEnded = thread.get_future();
    m_thread = std::thread(std::move(thread));
}

AvahiConnection::~AvahiConnection() {
    m_token.reset();
    m_worker->stop();
    if (m_threadEnded.wait_for(EndTimeout) == std::future_status::ready)
        m_thread.join();
    else
        m_thread.detach();
}

AvahiSubscription AvahiConnection::ask(AvahiQuestion question, Callback callback) {
    const AvahiQuestionId id = ++m_lastId;
    m_callbacks.emplace(id, std::make_shared<const Callback>(std::move(callback)));
    m_worker->ask(id, std::move(question));
    return AvahiSubscription(weak_from_this(), id);
}

AvahiBackendKind AvahiConnection::backendKind() const {
    return m_worker->backendKind();
}

void AvahiConnection::dispatch(AvahiQuestionId id, const AvahiAnswer& answer) {
    const auto found = m_callbacks.find(id);
    if (found == m_callbacks.end())
        return;
    const auto callback = found->second; // it may drop its own question, or this connection
    (*callback)(answer);
}

void AvahiConnection::drop(AvahiQuestionId id) {
    m_callbacks.erase(id);
    m_worker->drop(id);
}

} // namespace quiv
