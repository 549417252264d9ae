#include "platform/appearance/portal_appearance.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

// Names and shapes are those of the XDG desktop portal's documentation.
const auto Service = u"org.freedesktop.portal.Desktop"_s;
const auto Path = u"/org/freedesktop/portal/desktop"_s;
const auto Interface = u"org.freedesktop.portal.Settings"_s;

QStringList namespaces() {
    return {u"org.freedesktop.appearance"_s, u"org.gnome.desktop.interface"_s,
            u"org.gnome.desktop.a11y.interface"_s, u"org.kde.kdeglobals.General"_s,
            u"org.kde.kdeglobals.KDE"_s};
}

// A structure of numbers, such as a colour, as a list. Anything else as it is.
QVariant plain(const QVariant& value) {
    if (value.metaType() != QMetaType::fromType<QDBusArgument>())
        return value;
    const auto argument = value.value<QDBusArgument>();
    if (argument.currentSignature() != u"(ddd)"_s)
        return {};
    QVariantList numbers;
    argument.beginStructure();
    while (!argument.atEnd()) {
        double number = 0;
        argument >> number;
        numbers.append(number);
    }
    argument.endStructure();
    return numbers;
}

} // namespace

PortalAppearance::PortalAppearance(QObject* parent)
    : DesktopAppearance(parent),
      m_bus(QDBusConnection::sessionBus()),
      m_watcher(Service, m_bus, QDBusServiceWatcher::WatchForRegistration) {
    if (!m_bus.isConnected())
        return;
    qDBusRegisterMetaType<QMap<QString, QVariantMap>>();
    connect(&m_watcher, &QDBusServiceWatcher::serviceRegistered, this, &PortalAppearance::readAll);
    // From whoever it comes: the service may start only now.
    m_bus.connect(QString(), Path, Interface, u"SettingChanged"_s, this,
                  SLOT(changeSetting(QDBusMessage)));
    readAll();
}

void PortalAppearance::readAll() {
    QDBusMessage call = QDBusMessage::createMethodCall(Service, Path, Interface, u"ReadAll"_s);
    call << namespaces();
    auto* reading = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(reading, &QDBusPendingCallWatcher::finished, this, &PortalAppearance::takeAll);
}

void PortalAppearance::takeAll(QDBusPendingCallWatcher* reading) {
    reading->deleteLater();
    const QDBusPendingReply<QMap<QString, QVariantMap>> reply = *reading;
    if (reply.isError())
        return;
    m_settings = reply.value();
    for (QVariantMap& group : m_settings) {
        for (QVariant& value : group)
            value = plain(value);
    }
    setLook(desktopLook(m_settings));
}

void PortalAppearance::changeSetting(const QDBusMessage& change) {
    const QVariantList arguments = change.arguments();
    if (change.signature() != u"ssv"_s || !namespaces().contains(arguments[0].toString()))
        return;
    QVariant& value = m_settings[arguments[0].toString()][arguments[1].toString()];
    value = plain(arguments[2].value<QDBusVariant>().variant());
    setLook(desktopLook(m_settings));
}

} // namespace quiv
