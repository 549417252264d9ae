#pragma once

#include <chrono>

namespace quiv {

// How long looking for one frame may take. Starts when made.
class Patience {
public:
    // From then on the best frame so far is taken.
    bool isShort() const { return elapsed() > std::chrono::seconds(3); }
    // From then on nothing is.
    bool isOver() const { return elapsed() > std::chrono::seconds(5); }

private:
    using Clock = std::chrono::steady_clock;

    Clock::duration elapsed() const { return Clock::now() - m_start; }

    Clock::time_point m_start = Clock::now();
};

} // namespace quiv
