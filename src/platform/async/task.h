#pragma once

#include <QtGlobal> // first: moc stumbles over <concepts> without it

#include <concepts>
#include <coroutine>
#include <exception>
#include <optional>
#include <type_traits>
#include <utility>

namespace quiv {

// A coroutine that starts at once and is owned by its Task object.
//
// - Destroying the Task cancels: the coroutine frame goes, and with it every awaitable it is
//   suspended in. Awaitables take themselves out of whatever would resume them in their
//   destructors, so nothing ever resumes into a frame that is gone.
// - `co_await std::move(task)` gives the value or rethrows the exception.
// - What a task awaits is movable until awaited, registers in await_suspend (returning nothing) and
//   resumes later from the event loop, never from inside await_suspend.
// - A Task may be destroyed from inside its own coroutine's synchronous stretch (a signal handler
//   that drops the flow that is emitting): the frame is then freed as soon as it next suspends or
//   ends, and until then the running code keeps its locals.
// - Single-threaded: resumed and destroyed on the thread that made it.
//
// Coroutines are named functions with parameters by value; hoist temporaries out of expressions
// that contain co_await (g++ 12 destroys some of them twice).
template <class T = void> class Task;

namespace detail {

struct TaskPromiseBase;

// Wraps what a task awaits, so that its promise knows whether its code is on the stack.
template <class Awaiter> class TrackedAwaiter {
public:
    TrackedAwaiter(Awaiter awaiter, TaskPromiseBase& promise)
        : m_awaiter(std::move(awaiter)), m_promise(&promise) {}

    bool await_ready() { return m_awaiter.await_ready(); }
    std::coroutine_handle<> await_suspend(std::coroutine_handle<> handle);
    decltype(auto) await_resume();

private:
    Awaiter m_awaiter;
    TaskPromiseBase* m_promise;
};

struct TaskPromiseBase {
    std::coroutine_handle<> continuation;
    std::exception_ptr exception;
    bool running = true;    // its code is on the stack
    bool abandoned = false; // the Task went while running: the frame goes at its next suspension
    bool finished = false;

    std::suspend_never initial_suspend() noexcept { return {}; }

    struct FinalAwaiter {
        bool await_ready() const noexcept { return false; }
        template <class Promise>
        std::coroutine_handle<> await_suspend(std::coroutine_handle<Promise> handle) noexcept {
            TaskPromiseBase& promise = handle.promise();
            promise.running = false;
            promise.finished = true;
            if (promise.abandoned) {
                handle.destroy();
                return std::noop_coroutine();
            }
            return promise.continuation ? promise.continuation : std::noop_coroutine();
        }
        void await_resume() const noexcept {}
    };
    FinalAwaiter final_suspend() noexcept { return {}; }

    void unhandled_exception() noexcept { exception = std::current_exception(); }

    template <class Awaitable> auto await_transform(Awaitable&& awaitable) {
        if constexpr (requires { std::forward<Awaitable>(awaitable).operator co_await(); }) {
            using Awaiter = decltype(std::forward<Awaitable>(awaitable).operator co_await());
            return TrackedAwaiter<Awaiter>(std::forward<Awaitable>(awaitable).operator co_await(),
                                           *this);
        } else {
            return TrackedAwaiter<std::remove_cvref_t<Awaitable>>(
                std::forward<Awaitable>(awaitable), *this);
        }
    }
};

template <class Awaiter>
std::coroutine_handle<> TrackedAwaiter<Awaiter>::await_suspend(std::coroutine_handle<> handle) {
    if (m_promise->abandoned) {
        handle.destroy(); // and this awaiter with it
        return std::noop_coroutine();
    }
    m_promise->running = false;
    m_awaiter.await_suspend(handle);
    return std::noop_coroutine();
}

template <class Awaiter> decltype(auto) TrackedAwaiter<Awaiter>::await_resume() {
    m_promise->running = true;
    return m_awaiter.await_resume();
}

template <class T> struct TaskPromise : TaskPromiseBase {
    std::optional<T> value;
    Task<T> get_return_object();
    template <std::convertible_to<T> U> void return_value(U&& result) {
        value.emplace(std::forward<U>(result));
    }
    T take() {
        if (exception)
            std::rethrow_exception(exception);
        return std::move(*value);
    }
};

template <> struct TaskPromise<void> : TaskPromiseBase {
    Task<void> get_return_object();
    void return_void() {}
    void take() {
        if (exception)
            std::rethrow_exception(exception);
    }
};

} // namespace detail

template <class T> class [[nodiscard]] Task {
public:
    using promise_type = detail::TaskPromise<T>;
    using Handle = std::coroutine_handle<promise_type>;

    Task() = default;
    explicit Task(Handle handle) : m_handle(handle) {}
    Task(Task&& other) noexcept : m_handle(std::exchange(other.m_handle, {})) {}
    Task& operator=(Task&& other) noexcept {
        if (this != &other) {
            const auto old = std::exchange(m_handle, std::exchange(other.m_handle, {}));
            destroy(old);
        }
        return *this;
    }
    ~Task() { cancel(); }

    // Cancels the coroutine if it still runs; the Task is empty afterwards.
    void cancel() { destroy(std::exchange(m_handle, {})); }

    // True when there is nothing left to run: finished, cancelled or empty.
    bool isDone() const { return !m_handle || m_handle.promise().finished; }

    auto operator co_await() && noexcept {
        struct Awaiter {
            Task task; // owned by the awaiting frame: goes with it
            bool await_ready() const noexcept { return task.isDone(); }
            void await_suspend(std::coroutine_handle<> waiting) noexcept {
                task.m_handle.promise().continuation = waiting;
            }
            T await_resume() { return task.m_handle.promise().take(); }
        };
        return Awaiter{std::move(*this)};
    }

private:
    static void destroy(Handle handle) {
        if (!handle)
            return;
        auto& promise = handle.promise();
        promise.continuation = {};
        if (promise.running)
            promise.abandoned = true;
        else
            handle.destroy();
    }

    Handle m_handle;
};

namespace detail {

template <class T> Task<T> TaskPromise<T>::get_return_object() {
    return Task<T>(std::coroutine_handle<TaskPromise<T>>::from_promise(*this));
}
inline Task<void> TaskPromise<void>::get_return_object() {
    return Task<void>(std::coroutine_handle<TaskPromise<void>>::from_promise(*this));
}

} // namespace detail

} // namespace quiv
