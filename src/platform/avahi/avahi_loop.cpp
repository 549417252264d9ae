#include "platform/avahi/avahi_loop.h"

#include <sys/eventfd.h>
#include <unistd.h>

namespace quiv {

AvahiLoop::AvahiLoop()
    : m_poll(avahi_simple_poll_new()), m_wakeEvent(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    if (m_poll && m_wakeEvent >= 0)
        m_wakeWatch = poll()->watch_new(poll(), m_wakeEvent, AVAHI_WATCH_IN, onWake, this);
}

AvahiLoop::~AvahiLoop() {
    m_poll.reset();
    if (m_wakeEvent >= 0)
        close(m_wakeEvent);
}

void AvahiLoop::post(std::function<void()> work) {
    const std::lock_guard lock(m_mutex);
    m_posted.push_back(std::move(work));
    eventfd_write(m_wakeEvent, 1);
}

bool AvahiLoop::iterate(std::optional<std::chrono::milliseconds> atMost) {
    constexpr int untilSomethingHappens = -1;
    const int wait = atMost ? static_cast<int>(atMost->count()) : untilSomethingHappens;
    return avahi_simple_poll_iterate(m_poll.get(), wait) == 0;
}

void AvahiLoop::onWake(AvahiWatch*, int wakeEvent, AvahiWatchEvent, void* loop) {
    eventfd_t count = 0;
    eventfd_read(wakeEvent, &count);
    static_cast<AvahiLoop*>(loop)->runPosted();
}

void AvahiLoop::runPosted() {
    std::vector<std::function<void()>> posted;
    {
        const std::lock_guard lock(m_mutex);
        posted.swap(m_posted);
    }
    for (const auto& work : posted)
        work();
}

} // namespace quiv
