#include "app/diagnosis.h"

#include "platform/network_interfaces.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QStringList>
#include <QSysInfo>

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

QString setting(const char* variable) {
    const QString value = qEnvironmentVariable(variable);
    return value.isEmpty() ? u"not set"_s : value;
}

QString isThere(const QDBusConnection& bus, const QString& service) {
    if (!bus.isConnected())
        return u"no bus"_s;
    return bus.interface()->isServiceRegistered(service) ? u"runs"_s : u"does not run"_s;
}

QString finder() {
    const QString daemon = isThere(QDBusConnection::systemBus(), u"org.freedesktop.Avahi"_s);
    return daemon == u"runs"_s ? u"Avahi daemon"_s
                               : u"built in, because the Avahi daemon: "_s + daemon;
}

QString described(const NetworkInterface& each) {
    QStringList words{each.isLoopback ? u"this computer only"_s : u"network"_s,
                      each.isUp ? u"up"_s : u"down"_s,
                      each.canMulticast ? u"multicast"_s : u"no multicast"_s};
    if (each.hasIpv4)
        words.append(u"IPv4"_s);
    if (each.hasIpv6)
        words.append(u"IPv6"_s);
    return words.join(u", "_s);
}

} // namespace

QString diagnosis() {
    QStringList lines{
        u"Quiv Controller: "_s + QStringLiteral(QUIV_VERSION),
        u"Qt: "_s + QString::fromLatin1(qVersion()),
        u"System: %1, %2 %3, %4"_s.arg(QSysInfo::prettyProductName(), QSysInfo::kernelType(),
                                       QSysInfo::kernelVersion(),
                                       QSysInfo::currentCpuArchitecture()),
        u"Desktop: %1, session %2"_s.arg(setting("XDG_CURRENT_DESKTOP"),
                                         setting("XDG_SESSION_TYPE")),
        u"Language: "_s + setting("LANG"),
        u"Portal: "_s + isThere(QDBusConnection::sessionBus(), u"org.freedesktop.portal.Desktop"_s),
        u"Notifications: "_s +
            isThere(QDBusConnection::sessionBus(), u"org.freedesktop.Notifications"_s),
        u"TVs are found by: "_s + finder()};
    for (const NetworkInterface& each : networkInterfaces())
        lines.append(u"Interface %1: %2"_s.arg(each.name, described(each)));
    return lines.join(u'\n') + u'\n';
}

} // namespace quiv
