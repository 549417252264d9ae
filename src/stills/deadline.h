#pragma once

#include <chrono>

namespace quiv {

// By when a frame has to be found; counts from its construction.
class Deadline {
public:
    // It is time to take the best frame found so far.
    bool isNear() const { return elapsed() > std::chrono::seconds(3); }
    // The search has failed.
    bool hasPassed() const { return elapsed() > std::chrono::seconds(5); }

private:
    using Clock = std::chrono::steady_clock;

    Clock::duration elapsed() const { return Clock::now() - m_start; }

    Clock::time_point m_start = Clock::now();
};

} // namespace quiv
