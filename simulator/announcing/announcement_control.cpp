#include "simulator/announcing/announcement_control.h"

#include "simulator/announcing/service_name.h"

namespace quiv::simulator {

using namespace Qt::StringLiterals;

void AnnouncementControl::start(std::unique_ptr<Announcer> announcer,
                                const Announcement& announcement) {
    const std::scoped_lock lock(m_mutex);
    m_announcer = std::move(announcer);
    m_announcement = announcement;
    if (m_announcer)
        m_announcer->announce(m_announcement);
}

void AnnouncementControl::stop() {
    const std::scoped_lock lock(m_mutex);
    m_announcer.reset();
}

std::optional<QString> AnnouncementControl::change(const QJsonObject& change) {
    const std::scoped_lock lock(m_mutex);
    if (!m_announcer)
        return u"The TV does not announce itself."_s;
    if (!change["announced"_L1].toBool(true)) {
        m_announcer->withdraw();
        return std::nullopt;
    }
    const QString name = change["serviceName"_L1].toString(m_announcement.serviceName);
    if (!isServiceName(name))
        return u"A service name has 1 to 63 bytes."_s;
    const int port = change["port"_L1].toInt(m_announcement.port);
    m_announcement = {name, static_cast<quint16>(port)};
    m_announcer->announce(m_announcement);
    return std::nullopt;
}

} // namespace quiv::simulator
