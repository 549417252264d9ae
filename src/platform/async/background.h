#pragma once

#include <QCoreApplication>
#include <QMetaObject>
#include <QThreadPool>

#include <coroutine>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>

namespace quiv {

// co_await inBackground(work): runs `work` on the thread pool and resumes on the main thread with
// what it returned or threw. Dropping the awaiting task drops the result; the work itself runs on,
// so it must own everything it touches.
template <class Work> class [[nodiscard]] BackgroundAwaiter {
    using Value = std::invoke_result_t<Work>;

    struct State {
        Work work;
        std::optional<Value> value;      // written by the worker before it queues the resumption
        std::exception_ptr exception;    // likewise
        std::coroutine_handle<> waiting; // main thread only; none once the awaiter has gone
    };

public:
    explicit BackgroundAwaiter(Work work)
        : m_state(std::make_shared<State>(std::move(work), std::nullopt, nullptr, nullptr)) {}
    BackgroundAwaiter(BackgroundAwaiter&&) noexcept = default;
    BackgroundAwaiter& operator=(BackgroundAwaiter&&) = delete;
    ~BackgroundAwaiter() {
        if (m_state)
            m_state->waiting = nullptr;
    }

    bool await_ready() const noexcept { return false; }

    void await_suspend(std::coroutine_handle<> waiting) {
        m_state->waiting = waiting;
        QThreadPool::globalInstance()->start([state = m_state]() mutable {
            try {
                state->value.emplace(state->work());
            } catch (...) {
                state->exception = std::current_exception();
            }
            QMetaObject::invokeMethod(
                qApp,
                [state = std::move(state)] {
                    if (const auto handle = std::exchange(state->waiting, nullptr))
                        handle.resume();
                },
                Qt::QueuedConnection);
        });
    }

    Value await_resume() {
        if (m_state->exception)
            std::rethrow_exception(m_state->exception);
        return std::move(*m_state->value);
    }

private:
    std::shared_ptr<State> m_state;
};

template <class Work> BackgroundAwaiter<Work> inBackground(Work work) {
    return BackgroundAwaiter<Work>(std::move(work));
}

} // namespace quiv
