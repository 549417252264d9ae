#include "app/diagnosis.h"

#include "net/network_problem.h"
#include "platform/installation.h"
#include "platform/network_interfaces.h"
#include "platform/player/player_plugin.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QFileInfo>
#include <QPluginLoader>
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

QString player() {
    QPluginLoader library(playerLibraryPath());
    if (auto* const plugin = qobject_cast<PlayerPlugin*>(library.instance()))
        return plugin->description();
    return QFileInfo::exists(library.fileName()) ? u"cannot be loaded"_s : u"not installed"_s;
}

QString helper(const QString& name) {
    const bool isThere = QFileInfo(helperProgramPath(name)).isExecutable();
    return name + (isThere ? u" is there"_s : u" is missing"_s);
}

} // namespace

QString diagnosis() {
    const QList<NetworkInterface> interfaces = networkInterfaces();
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
    if (const NetworkProblem problem = networkProblem(interfaces, true); problem.isKnown())
        lines.append(u"Network: "_s + problem.title);
    for (const NetworkInterface& each : interfaces)
        lines.append(u"Interface %1: %2"_s.arg(each.name, described(each)));
    lines.append(u"Helpers: %1, %2"_s.arg(helper(u"quiv-picture"_s), helper(u"quiv-still"_s)));
    lines.append(u"Player: "_s + player());
    return lines.join(u'\n') + u'\n';
}

} // namespace quiv
