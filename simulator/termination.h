#pragma once

#include <QSocketNotifier>

#include <functional>
#include <memory>

namespace quiv::simulator {

// Turns SIGTERM and SIGINT into a call on the main thread. Make it before any other thread, since
// threads inherit which signals are blocked.
class Termination {
public:
    explicit Termination(std::function<void()> asked);
    ~Termination();
    Q_DISABLE_COPY_MOVE(Termination)

private:
    int m_descriptor;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

// Has the kernel end this program together with the one that started it.
void exitWithParent();

} // namespace quiv::simulator
