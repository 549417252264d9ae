#pragma once

#include <QCoreApplication>
#include <QMetaObject>

#include <coroutine>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

namespace quiv {

// An answer that somebody who is not a coroutine gives to one that waits for it. Main thread only.
//
//     auto waiting = answer.wait([this] { hide(); }); // called if nobody waits any more
//     const QString name = co_await std::move(waiting);
//
// Whoever answers may go before or after the one who waits, but must have answered before going if
// the call-back needs it.
template <class T> class PendingAnswer {
    struct State {
        std::optional<T> value;
        std::coroutine_handle<> task; // none before it waits, and once it was resumed or has gone
        std::function<void()> dropped;
    };

    static void resume(const std::shared_ptr<State>& state) {
        const auto run = [state] {
            if (const auto task = std::exchange(state->task, nullptr))
                task.resume();
        };
        QMetaObject::invokeMethod(qApp, run, Qt::QueuedConnection);
    }

public:
    class [[nodiscard]] Waiting {
    public:
        explicit Waiting(std::shared_ptr<State> state) : m_state(std::move(state)) {}
        Waiting(Waiting&&) noexcept = default;
        Waiting& operator=(Waiting&&) = delete;
        ~Waiting() {
            if (!m_state)
                return;
            m_state->task = nullptr;
            if (const auto dropped = std::exchange(m_state->dropped, nullptr))
                dropped();
        }

        bool await_ready() const noexcept { return false; }
        void await_suspend(std::coroutine_handle<> task) {
            m_state->task = task;
            if (m_state->value)
                resume(m_state);
        }
        T await_resume() { return std::move(*m_state->value); }

    private:
        std::shared_ptr<State> m_state;
    };

    // Only the first counts.
    void give(T value) {
        if (m_state->value)
            return;
        m_state->dropped = nullptr;
        m_state->value.emplace(std::move(value));
        if (m_state->task)
            resume(m_state);
    }

    Waiting wait(std::function<void()> dropped = {}) {
        if (!m_state->value)
            m_state->dropped = std::move(dropped);
        return Waiting(m_state);
    }

private:
    std::shared_ptr<State> m_state = std::make_shared<State>();
};

} // namespace quiv
