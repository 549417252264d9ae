#pragma once

namespace quiv {

// Keeps the computer awake and its screen lit while something plays. Main thread only; destroying
// it lets the computer sleep.
class SleepInhibitor {
public:
    virtual ~SleepInhibitor() = default;
    // Calling it again with the same value does nothing.
    virtual void setInhibited(bool isInhibited) = 0;
};

} // namespace quiv
