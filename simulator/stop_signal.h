#pragma once

#include <QtGlobal>

namespace quiv::simulator {

// Raised once, when the program ends. Threads that wait on a socket wait on it too.
class StopSignal {
public:
    StopSignal();
    ~StopSignal();
    Q_DISABLE_COPY_MOVE(StopSignal)

    void raise();
    // Readable once raised; for poll().
    int descriptor() const { return m_descriptor; }

private:
    int m_descriptor;
};

} // namespace quiv::simulator
