#pragma once

#include "platform/async/threads.h"

#include <coroutine>
#include <exception>
#include <functional>
#include <memory>
#include <utility>
#include <variant>

namespace quiv {

// A result that code outside of coroutines hands to the one task that awaits it.
//
//     const QString name = co_await promise.wait([this] { hide(); }); // hide() if the task is
//     dropped
//
// Only the first outcome counts; it may come before the task waits. The task resumes from the event
// loop. Copies share the outcome, and the promise may be destroyed before the task is. Main thread
// only.
template <class T> class Promise {
    struct State {
        std::variant<std::monostate, T, std::exception_ptr> outcome;
        std::coroutine_handle<> task; // is null unless a task is suspended
        std::function<void()> onDropped;

        bool isSettled() const { return outcome.index() != 0; }
        void resume() {
            if (const auto waiting = std::exchange(task, nullptr))
                waiting.resume();
        }
    };

public:
    class [[nodiscard]] Awaiter {
    public:
        explicit Awaiter(std::shared_ptr<State> state) : m_state(std::move(state)) {}
        Awaiter(Awaiter&&) noexcept = default;
        Awaiter& operator=(Awaiter&&) = delete;
        ~Awaiter() {
            if (!m_state)
                return;
            m_state->task = nullptr;
            if (const auto onDropped = std::exchange(m_state->onDropped, nullptr))
                onDropped();
        }

        bool await_ready() const noexcept { return false; }
        void await_suspend(std::coroutine_handle<> task) {
            m_state->task = task;
            if (m_state->isSettled())
                resumeLater(m_state);
        }
        T await_resume() {
            if (const auto* exception = std::get_if<std::exception_ptr>(&m_state->outcome))
                std::rethrow_exception(*exception);
            return std::get<T>(std::move(m_state->outcome));
        }

    private:
        std::shared_ptr<State> m_state;
    };

    void resolve(T value) const { settle(std::move(value)); }
    void reject(std::exception_ptr exception) const { settle(std::move(exception)); }

    // Resumes the task before returning. Only for code that the event loop calls directly.
    void resolveNow(T value) const { settleNow(std::move(value)); }
    void rejectNow(std::exception_ptr exception) const { settleNow(std::move(exception)); }

    // `onDropped` is called if the task is dropped before there is an outcome.
    Awaiter wait(std::function<void()> onDropped = {}) const {
        if (!m_state->isSettled())
            m_state->onDropped = std::move(onDropped);
        return Awaiter(m_state);
    }

private:
    template <class Outcome> bool store(Outcome outcome) const {
        if (m_state->isSettled())
            return false;
        m_state->onDropped = nullptr;
        m_state->outcome.template emplace<Outcome>(std::move(outcome));
        return true;
    }
    template <class Outcome> void settle(Outcome outcome) const {
        if (store(std::move(outcome)) && m_state->task)
            resumeLater(m_state);
    }
    template <class Outcome> void settleNow(Outcome outcome) const {
        const std::shared_ptr<State> state = m_state; // the task may destroy this promise
        if (store(std::move(outcome)))
            state->resume();
    }
    static void resumeLater(const std::shared_ptr<State>& state) {
        postToMainThread(std::weak_ptr<const void>(state),
                         [state = state.get()] { state->resume(); });
    }

    std::shared_ptr<State> m_state = std::make_shared<State>();
};

} // namespace quiv
