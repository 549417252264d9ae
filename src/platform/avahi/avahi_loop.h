#pragma once

#include <avahi-common/simple-watch.h>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

namespace quiv {

// Avahi's event loop, with a way in for other threads: post() from any thread, the rest on the
// thread that runs the loop. Posted work that was not reached is dropped with the loop.
//
// (The library's own wake-up is not meant for other threads, and its threaded loop makes them wait
// for a lock that is held while a D-Bus call is answered.)
class AvahiLoop {
public:
    AvahiLoop();
    ~AvahiLoop();
    AvahiLoop(const AvahiLoop&) = delete;
    AvahiLoop& operator=(const AvahiLoop&) = delete;

    // Returns false if the system refused what a loop needs.
    bool isUsable() const { return m_wakeWatch != nullptr; }
    const AvahiPoll* poll() const { return avahi_simple_poll_get(m_poll.get()); }

    void post(std::function<void()> work);
    // Waits for events, posted work or the end of the time, and handles what there is. Returns
    // false once the loop cannot go on.
    bool iterate(std::optional<std::chrono::milliseconds> atMost);

private:
    struct FreePoll {
        void operator()(AvahiSimplePoll* poll) const { avahi_simple_poll_free(poll); }
    };

    static void onWake(AvahiWatch* watch, int wakeEvent, AvahiWatchEvent event, void* loop);
    void runPosted();

    std::unique_ptr<AvahiSimplePoll, FreePoll> m_poll;
    int m_wakeEvent;
    AvahiWatch* m_wakeWatch = nullptr; // owned by m_poll
    std::mutex m_mutex;
    std::vector<std::function<void()>> m_posted; // guarded by m_mutex
};

} // namespace quiv
