#pragma once

#include "platform/clock.h"

#include <map>
#include <utility>

namespace quiv {

// A clock that stands still until a test moves it. advance() runs the due timers in order of time.
class FakeClock final : public Clock {
public:
    WallTime wallTime() const override {
        return WallTime(std::chrono::milliseconds(1'700'000'000'000)) + elapsed();
    }
    Instant now() const override { return m_now; }

    std::unique_ptr<Timer> after(std::chrono::milliseconds delay,
                                 std::function<void()> callback) override {
        const auto entry = m_timers.emplace(m_now + delay, std::move(callback));
        return std::make_unique<FakeTimer>(*this, entry);
    }

    void advance(std::chrono::milliseconds time) {
        const Instant end = m_now + time;
        while (!m_timers.empty() && m_timers.begin()->first <= end) {
            m_now = m_timers.begin()->first;
            const auto callback = std::exchange(m_timers.begin()->second, nullptr);
            m_spent.insert(m_timers.extract(m_timers.begin()));
            callback();
        }
        m_now = end;
    }

    std::size_t pendingTimers() const { return m_timers.size(); }

private:
    using Timers = std::multimap<Instant, std::function<void()>>;

    struct FakeTimer final : Timer {
        FakeTimer(FakeClock& owner, Timers::iterator position) : clock(owner), entry(position) {}
        ~FakeTimer() override { (entry->second ? clock.m_timers : clock.m_spent).erase(entry); }
        FakeClock& clock;
        Timers::iterator entry;
    };

    std::chrono::milliseconds elapsed() const {
        return std::chrono::duration_cast<std::chrono::milliseconds>(m_now - Instant());
    }

    Instant m_now;
    Timers m_timers;
    Timers m_spent; // have fired; their objects may still be held
};

} // namespace quiv
