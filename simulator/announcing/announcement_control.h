#pragma once

#include "simulator/announcing/announcer.h"

#include <QJsonObject>

#include <mutex>

namespace quiv::simulator {

// Whether and how the TV is announced just now. Thread-safe.
class AnnouncementControl {
public:
    // Without an announcer, because announcing is switched off or failed, every change is refused.
    void start(std::unique_ptr<Announcer> announcer, const Announcement& announcement);
    void stop();

    // Changes "serviceName" and "port" and announces, or withdraws on "announced": false.
    // Returns a sentence if that is not possible.
    std::optional<QString> change(const QJsonObject& change);

private:
    std::mutex m_mutex;
    std::unique_ptr<Announcer> m_announcer;
    Announcement m_announcement;
};

} // namespace quiv::simulator
