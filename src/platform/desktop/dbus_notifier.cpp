#include "platform/desktop/dbus_notifier.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QVariantMap>

#include <utility>

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

const auto Service = u"org.freedesktop.Notifications"_s;
const auto Path = u"/org/freedesktop/Notifications"_s;
const auto DefaultKey = u"default"_s; // of what a click on the notification does
const auto ActionKey = u"action"_s;
constexpr int DesktopDecides = -1; // how long it stays

QDBusMessage methodCall(const QString& method) {
    return QDBusMessage::createMethodCall(Service, Path, Service, method);
}

} // namespace

DBusNotifier::DBusNotifier(const QString& applicationId) : m_applicationId(applicationId) {
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.connect(Service, Path, Service, u"ActivationToken"_s, this,
                SLOT(tokenGiven(uint, QString)));
    bus.connect(Service, Path, Service, u"ActionInvoked"_s, this,
                SLOT(actionInvoked(uint, QString)));
    bus.connect(Service, Path, Service, u"NotificationClosed"_s, this, SLOT(closed(uint)));
}

DBusNotifier::~DBusNotifier() {
    withdraw();
}

void DBusNotifier::notify(const Notification& notification,
                          std::function<void(const NotificationAnswer&)> answered) {
    m_wanted = notification;
    m_answered = std::move(answered);
    m_token.clear();
    if (!m_capabilities)
        askWhatItCan();
    else
        send();
}

void DBusNotifier::askWhatItCan() {
    auto* const asking = new QDBusPendingCallWatcher(
        QDBusConnection::sessionBus().asyncCall(methodCall(u"GetCapabilities"_s)), this);
    connect(asking, &QDBusPendingCallWatcher::finished, this, [this, asking] {
        asking->deleteLater();
        if (asking->isError())
            return; // asked again when there is something to tell again
        m_capabilities = asking->reply().arguments().value(0).toStringList();
        send();
    });
}

// One at a time, because the next replaces the one that the desktop has yet to number.
void DBusNotifier::send() {
    if (m_isSending || !m_wanted)
        return;
    const Notification wanted = *std::exchange(m_wanted, std::nullopt);
    const bool readsMarkup = m_capabilities->contains(u"body-markup"_s);
    QStringList actions{DefaultKey, u"Show"_s};
    if (!wanted.action.isEmpty())
        actions << ActionKey << wanted.action;
    QDBusMessage call = methodCall(u"Notify"_s);
    call << u"Quiv Controller"_s << m_id << m_applicationId << wanted.title
         << (readsMarkup ? wanted.text.toHtmlEscaped() : wanted.text) << actions
         << QVariantMap{{u"desktop-entry"_s, m_applicationId}} << DesktopDecides;
    m_isSending = true;
    auto* const sending =
        new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call), this);
    connect(sending, &QDBusPendingCallWatcher::finished, this, [this, sending] {
        sending->deleteLater();
        m_isSending = false;
        if (!sending->isError())
            m_id = sending->reply().arguments().value(0).toUInt();
        send();
    });
}

void DBusNotifier::withdraw() {
    m_wanted.reset();
    if (!std::exchange(m_answered, nullptr) || m_id == 0)
        return;
    QDBusMessage call = methodCall(u"CloseNotification"_s);
    call << m_id;
    QDBusConnection::sessionBus().send(call);
}

void DBusNotifier::tokenGiven(uint id, const QString& token) {
    if (id == m_id)
        m_token = token;
}

void DBusNotifier::actionInvoked(uint id, const QString& key) {
    if (id != m_id)
        return;
    if (const auto answered = std::exchange(m_answered, nullptr))
        answered({key == ActionKey, std::exchange(m_token, {})});
}

void DBusNotifier::closed(uint id) {
    if (id == m_id)
        m_answered = nullptr;
}

} // namespace quiv
