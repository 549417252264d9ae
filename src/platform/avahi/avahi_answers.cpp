#include "platform/avahi/avahi_answers.h"

#include <algorithm>
#include <utility>

namespace quiv {

AvahiScope::AvahiScope(std::shared_ptr<AvahiConnection> connection)
    : m_connection(std::move(connection)), m_open(std::make_unique<QObject>()) {}

void AvahiScope::close() {
    m_connection.reset();
    m_open.reset();
}

AvahiAnswers::AvahiAnswers(std::shared_ptr<AvahiScope> scope) : m_scope(std::move(scope)) {
    if (const QObject* open = m_scope->open())
        QObject::connect(
            open, &QObject::destroyed, &m_context, [this] { wake(); }, Qt::QueuedConnection);
}

void AvahiAnswers::ask(AvahiQuestion question) {
    AvahiConnection* connection = m_scope->connection();
    if (!connection)
        return;
    m_subscriptions.push_back(connection->ask(std::move(question), [this](const AvahiAnswer& answer) {
        m_answers.push_back(answer);
        wake();
    }));
}

void AvahiAnswers::suspend(std::coroutine_handle<> waiting, Clock::Instant deadline) {
    using std::chrono::milliseconds;
    m_waiting = waiting;
    const auto delay = std::chrono::ceil<milliseconds>(deadline - m_clock.now());
    m_deadlineTimer = m_clock.after(std::max(milliseconds(0), delay), [this] { wake(); });
}

std::optional<AvahiAnswer> AvahiAnswers::take() {
    m_deadlineTimer.reset();
    if (!m_scope->open() || m_answers.empty())
        return std::nullopt;
    AvahiAnswer answer = std::move(m_answers.front());
    m_answers.pop_front();
    return answer;
}

void AvahiAnswers::wake() {
    if (m_waiting)
        std::exchange(m_waiting, {}).resume(); // often the end of this object
}

} // namespace quiv
