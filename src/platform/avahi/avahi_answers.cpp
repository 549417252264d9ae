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
        QObject::connect(open, &QObject::destroyed, &m_context, [this] { m_woken.resolve(true); });
}

void AvahiAnswers::ask(AvahiQuestion question) {
    AvahiConnection* connection = m_scope->connection();
    if (!connection)
        return;
    m_subscriptions.push_back(
        connection->ask(std::move(question), [this](const AvahiAnswer& answer) {
            m_answers.push_back(answer);
            m_woken.resolve(true);
        }));
}

Task<std::optional<AvahiAnswer>> AvahiAnswers::next(Clock::Instant deadline) {
    using std::chrono::milliseconds;
    if (m_answers.empty() && m_scope->open()) {
        m_woken = {};
        SystemClock clock;
        const auto left = std::chrono::ceil<milliseconds>(deadline - clock.now());
        const auto timer = clock.after(std::max(milliseconds(0), left),
                                       [woken = m_woken] { woken.resolve(true); });
        co_await m_woken.wait();
    }
    if (m_answers.empty() || !m_scope->open())
        co_return std::nullopt;
    AvahiAnswer answer = std::move(m_answers.front());
    m_answers.pop_front();
    co_return answer;
}

} // namespace quiv
