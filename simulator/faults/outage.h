#pragma once

#include <atomic>
#include <chrono>

namespace quiv::simulator {

// A TV that has lost its network for a while: every connection breaks. Thread-safe.
class Outage {
public:
    using Clock = std::chrono::steady_clock;

    void begin(std::chrono::milliseconds duration) {
        m_end = (Clock::now() + duration).time_since_epoch();
    }
    bool isOn() const { return Clock::now().time_since_epoch() < m_end.load(); }

private:
    std::atomic<Clock::duration> m_end{Clock::duration::zero()};
};

} // namespace quiv::simulator
