#pragma once

#include "platform/async/promise.h"
#include "platform/async/task.h"

#include <deque>
#include <functional>
#include <memory>
#include <utility>

namespace quiv {

// Lets a limited number of tasks work at once; the others wait and follow in the order they came.
//
//     const Semaphore::Permit permit = co_await semaphore.acquire(); // held while it lives
//
// A task that is dropped while it waits or works makes room. Main thread only.
class Semaphore {
public:
    class Permit;

    explicit Semaphore(int permits) : m_state(std::make_shared<State>(State{permits, {}})) {}

    // Completes at once while permits are left.
    Task<Permit> acquire() { return acquireFrom(m_state); }

private:
    struct State {
        int free;
        std::deque<std::shared_ptr<Promise<Permit>>> waiting;
    };

    static Task<Permit> acquireFrom(std::shared_ptr<State> state);

    std::shared_ptr<State> m_state;
};

class [[nodiscard]] Semaphore::Permit {
public:
    explicit Permit(std::shared_ptr<State> state) : m_state(std::move(state)) {}
    Permit(Permit&&) noexcept = default;
    Permit& operator=(Permit&&) = delete;
    ~Permit() {
        if (!m_state)
            return;
        if (m_state->waiting.empty()) {
            ++m_state->free;
            return;
        }
        const auto next = std::move(m_state->waiting.front());
        m_state->waiting.pop_front();
        next->resolve(Permit(std::move(m_state)));
    }

private:
    std::shared_ptr<State> m_state; // is nullptr once moved from
};

inline Task<Semaphore::Permit> Semaphore::acquireFrom(std::shared_ptr<State> state) {
    if (state->free > 0) {
        --state->free;
        co_return Permit(std::move(state));
    }
    const auto turn = std::make_shared<Promise<Permit>>();
    state->waiting.push_back(turn);
    const std::function<void()> leave = [state, turn] {
        std::erase(state->waiting, turn);
    };
    co_return co_await turn->wait(leave);
}

} // namespace quiv
