#include "platform/clock.h"

#include <QTimer>

namespace quiv {

namespace {

class EventLoopTimer final : public Clock::Timer {
public:
    EventLoopTimer(std::chrono::milliseconds delay, std::function<void()> callback)
        : m_timer(new QTimer) {
        m_timer->setSingleShot(true);
        m_timer->setTimerType(Qt::PreciseTimer);
        QObject::connect(m_timer, &QTimer::timeout, m_timer, std::move(callback));
        m_timer->start(delay);
    }

    // The callback itself may destroy the timer, so the timer object outlives its own signal.
    ~EventLoopTimer() override {
        m_timer->stop();
        m_timer->deleteLater();
    }

private:
    QTimer* m_timer;
};

} // namespace

Clock::WallTime SystemClock::wallTime() const {
    return std::chrono::time_point_cast<std::chrono::milliseconds>(
        std::chrono::system_clock::now());
}

Clock::Instant SystemClock::now() const {
    return std::chrono::steady_clock::now();
}

std::unique_ptr<Clock::Timer> SystemClock::after(std::chrono::milliseconds delay,
                                                 std::function<void()> callback) {
    return std::make_unique<EventLoopTimer>(delay, std::move(callback));
}

} // namespace quiv
