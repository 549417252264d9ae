#pragma once

namespace quiv {

// Keeps the computer awake while something goes on that a sleep would break off. Main thread only;
// destroying it lets the computer sleep.
class SleepInhibitor {
public:
    virtual ~SleepInhibitor() = default;
    // Calling it again with the same value does nothing.
    virtual void setInhibited(bool isInhibited) = 0;
};

} // namespace quiv
