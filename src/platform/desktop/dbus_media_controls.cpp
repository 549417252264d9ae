#include "platform/desktop/dbus_media_controls.h"

#include "platform/desktop/mpris_interfaces.h"

#include <QCoreApplication>
#include <QDBusConnection>

#include <utility>

namespace quiv {

using namespace Qt::StringLiterals;

DBusMediaControls::DBusMediaControls(const QString& applicationId)
    : m_root(new MprisRoot(&m_object, applicationId)), m_player(new MprisPlayer(&m_object)) {}

DBusMediaControls::~DBusMediaControls() {
    withdraw();
}

void DBusMediaControls::setPlayer(Player* player) {
    m_root->player = player;
    m_player->player = player;
}

void DBusMediaControls::show(const std::optional<MediaSession>& session) {
    if (session == m_player->session())
        return;
    const bool isNew = session && !m_player->session();
    if (!session)
        withdraw();
    m_player->setSession(session);
    if (isNew)
        offer();
}

void DBusMediaControls::positionJumped() {
    if (!m_service.isEmpty())
        m_player->tellPosition();
}

void DBusMediaControls::offer() {
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.registerObject(QString::fromLatin1(MprisPath), &m_object, QDBusConnection::ExportAdaptors);
    // A second one adds its process, as the interface says.
    const QString first = u"org.mpris.MediaPlayer2.quiv-controller"_s;
    for (const QString& name :
         {first, first + u".instance%1"_s.arg(QCoreApplication::applicationPid())}) {
        if (bus.registerService(name)) {
            m_service = name;
            return;
        }
    }
}

void DBusMediaControls::withdraw() {
    if (m_service.isEmpty())
        return;
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.unregisterService(std::exchange(m_service, {}));
    bus.unregisterObject(QString::fromLatin1(MprisPath));
}

} // namespace quiv
