#include "simulator/stop_signal.h"

#include <sys/eventfd.h>
#include <unistd.h>

namespace quiv::simulator {

StopSignal::StopSignal() : m_descriptor(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

StopSignal::~StopSignal() {
    close(m_descriptor);
}

void StopSignal::raise() {
    eventfd_write(m_descriptor, 1);
}

} // namespace quiv::simulator
