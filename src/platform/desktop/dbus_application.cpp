#include "platform/desktop/dbus_application.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>

#include <utility>

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

constexpr int AnswerTimeoutMs = 5000;
const auto Interface = u"org.freedesktop.Application"_s;
const auto Token = u"activation-token"_s;       // Wayland's
const auto StartupId = u"desktop-startup-id"_s; // X11's

// As the interface derives it.
QString pathOf(const QString& name) {
    return u'/' + QString(name).replace(u'.', u'/').replace(u'-', u'_');
}

QString tokenOf(const QVariantMap& platformData) {
    return platformData.value(Token, platformData.value(StartupId)).toString();
}

} // namespace

DBusApplication::DBusApplication(const QString& applicationId, QObject* parent)
    : QObject(parent), m_name(applicationId) {}

DBusApplication::~DBusApplication() {
    release();
}

void DBusApplication::release() {
    if (!std::exchange(m_isRegistered, false))
        return;
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.unregisterService(m_name);
    bus.unregisterObject(pathOf(m_name));
}

DBusApplication::Claim DBusApplication::claim(const Launch& launch) {
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return Claim::First;
    // Whoever sees the name must find the object.
    bus.registerObject(pathOf(m_name), this, QDBusConnection::ExportAllSlots);
    const QDBusReply<QDBusConnectionInterface::RegisterServiceReply> reply =
        bus.interface()->registerService(m_name);
    m_isRegistered = true;
    if (!reply.isValid() || reply == QDBusConnectionInterface::ServiceRegistered)
        return Claim::First;
    bus.unregisterObject(pathOf(m_name));
    m_isRegistered = false;

    QDBusMessage call = QDBusMessage::createMethodCall(
        m_name, pathOf(m_name), Interface, launch.files.isEmpty() ? u"Activate"_s : u"Open"_s);
    if (!launch.files.isEmpty())
        call << QUrl::toStringList(launch.files, QUrl::FullyEncoded);
    call << QVariantMap{{Token, launch.activationToken}, {StartupId, launch.activationToken}};
    const QDBusMessage answer = bus.call(call, QDBus::Block, AnswerTimeoutMs);
    return answer.type() == QDBusMessage::ReplyMessage ? Claim::HandedOver : Claim::Unanswered;
}

void DBusApplication::Activate(const QVariantMap& platformData) {
    Q_EMIT launched({{}, tokenOf(platformData)});
}

void DBusApplication::Open(const QStringList& uris, const QVariantMap& platformData) {
    Q_EMIT launched({QUrl::fromStringList(uris), tokenOf(platformData)});
}

void DBusApplication::ActivateAction(const QString&, const QVariantList&,
                                     const QVariantMap& platformData) {
    Activate(platformData); // it has no actions
}

} // namespace quiv
