#pragma once

#include "platform/async/promise.h"
#include "platform/async/task.h"
#include "platform/avahi/avahi_connection.h"
#include "platform/clock.h"

#include <QObject>
#include <chrono>
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
    // Returns nullptr once it is closed.
    AvahiConnection* connection() const { return m_connection.get(); }
    // Is destroyed when the scope is closed; returns nullptr from then on.
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
    explicit AvahiAnswers(std::shared_ptr<AvahiScope> scope);
    AvahiAnswers(const AvahiAnswers&) = delete;
    AvahiAnswers& operator=(const AvahiAnswers&) = delete;

    void ask(AvahiQuestion question);
    // The next answer; nullopt when the deadline passes or the scope is closed first.
    Task<std::optional<AvahiAnswer>> next(Clock::Instant deadline);

private:
    std::shared_ptr<AvahiScope> m_scope;
    std::deque<AvahiAnswer> m_answers;
    std::vector<AvahiSubscription> m_subscriptions;
    Promise<bool> m_woken; // by an answer, the deadline or the scope's closing
    QObject m_context;     // receives the scope's closing
};

} // namespace quiv
