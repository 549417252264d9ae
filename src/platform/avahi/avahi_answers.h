#pragma once

#include "platform/avahi/avahi_connection.h"
#include "platform/clock.h"

#include <QObject>
#include <chrono>
#include <coroutine>
#include <deque>
#include <memory>
#include <optional>
#include <vector>

namespace quiv {

// What an adapter's requests share: the connection, while the adapter exists. The adapter closes
// it when it goes, its requests hold it on and see that it is closed.
class AvahiScope {
public:
    explicit AvahiScope(std::shared_ptr<AvahiConnection> connection);

    void close();
    // Null when closed.
    AvahiConnection* connection() const { return m_connection.get(); }
    // Destroyed when closed; null afterwards.
    const QObject* open() const { return m_open.get(); }

private:
    std::shared_ptr<AvahiConnection> m_connection;
    std::unique_ptr<QObject> m_open;
};

// The answers to the questions of one request, for its coroutine to await one by one:
//
//     AvahiAnswers answers(scope);
//     answers.ask(AddressQuestion{...});
//     const std::optional<AvahiAnswer> answer = co_await answers.next(deadline);
//
// Owned by the coroutine's frame and dropping its questions with it. Main thread only; used by one
// coroutine, which awaits only one answer at a time.
class AvahiAnswers {
public:
    class Next;

    explicit AvahiAnswers(std::shared_ptr<AvahiScope> scope);
    AvahiAnswers(const AvahiAnswers&) = delete;
    AvahiAnswers& operator=(const AvahiAnswers&) = delete;

    void ask(AvahiQuestion question);
    // The next answer; nullopt when the deadline passes or the scope is closed first.
    Next next(Clock::Instant deadline);

private:
    bool isReady() const { return !m_answers.empty() || !m_scope->open(); }
    void suspend(std::coroutine_handle<> waiting, Clock::Instant deadline);
    std::optional<AvahiAnswer> take();
    void wake();

    std::shared_ptr<AvahiScope> m_scope;
    std::deque<AvahiAnswer> m_answers;
    std::vector<AvahiSubscription> m_subscriptions;
    std::coroutine_handle<> m_waiting;
    SystemClock m_clock;
    std::unique_ptr<Clock::Timer> m_deadlineTimer;
    QObject m_context; // receives the scope's closing
};

class [[nodiscard]] AvahiAnswers::Next {
public:
    Next(AvahiAnswers& answers, Clock::Instant deadline)
        : m_answers(&answers), m_deadline(deadline) {}

    bool await_ready() const { return m_answers->isReady(); }
    void await_suspend(std::coroutine_handle<> waiting) { m_answers->suspend(waiting, m_deadline); }
    std::optional<AvahiAnswer> await_resume() { return m_answers->take(); }

private:
    AvahiAnswers* m_answers;
    Clock::Instant m_deadline;
};

inline AvahiAnswers::Next AvahiAnswers::next(Clock::Instant deadline) {
    return Next(*this, deadline);
}

} // namespace quiv
