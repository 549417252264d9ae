#include "simulator/termination.h"

#include <csignal>
#include <sys/prctl.h>
#include <sys/signalfd.h>
#include <unistd.h>

namespace quiv::simulator {

Termination::Termination(std::function<void()> asked) {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    // A peer that went away is an error code of the write, not the end of this program.
    std::signal(SIGPIPE, SIG_IGN);
    m_descriptor = signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK);
    m_notifier = std::make_unique<QSocketNotifier>(m_descriptor, QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(),
                     std::move(asked));
}

Termination::~Termination() {
    m_notifier.reset();
    close(m_descriptor);
}

void exitWithParent() {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
}

} // namespace quiv::simulator
