#pragma once

#include <QtGlobal> // first: moc stumbles over <chrono> without it

#include <chrono>
#include <coroutine>
#include <functional>
#include <memory>

namespace quiv {

// Time as the model sees it; tests replace it to move through minutes in no time.
// Used on the main thread only.
class Clock {
public:
    using WallTime = std::chrono::sys_time<std::chrono::milliseconds>;
    using Instant = std::chrono::steady_clock::time_point;

    // A pending wake-up. Destroying it cancels: the callback then never runs.
    class Timer {
    public:
        virtual ~Timer() = default;
    };

    virtual ~Clock() = default;

    // Time of day; may jump.
    virtual WallTime wallTime() const = 0;
    // Monotonic time, for intervals.
    virtual Instant now() const = 0;
    // Runs `callback` once, from the event loop, when `delay` has passed.
    virtual std::unique_ptr<Timer> after(std::chrono::milliseconds delay,
                                         std::function<void()> callback) = 0;
};

// The system's clocks and the event loop's timers.
class SystemClock final : public Clock {
public:
    WallTime wallTime() const override;
    Instant now() const override;
    std::unique_ptr<Timer> after(std::chrono::milliseconds delay,
                                 std::function<void()> callback) override;
};

// co_await sleepFor(clock, 2s): resumes after the delay; cancelled with the coroutine.
class [[nodiscard]] SleepAwaiter {
public:
    SleepAwaiter(Clock& clock, std::chrono::milliseconds delay) : m_clock(&clock), m_delay(delay) {}

    bool await_ready() const noexcept { return false; }
    void await_suspend(std::coroutine_handle<> waiting) {
        m_timer = m_clock->after(m_delay, [waiting] { waiting.resume(); });
    }
    void await_resume() noexcept { m_timer.reset(); }

private:
    Clock* m_clock;
    std::chrono::milliseconds m_delay;
    std::unique_ptr<Clock::Timer> m_timer;
};

inline SleepAwaiter sleepFor(Clock& clock, std::chrono::milliseconds delay) {
    return SleepAwaiter(clock, delay);
}

} // namespace quiv
