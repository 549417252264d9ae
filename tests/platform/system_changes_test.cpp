#include <QTest> // first: moc stumbles over standard headers that come before any of Qt's

#include "platform/avahi/avahi_test_daemon.h"
#include "platform/system_changes.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QProcess>
#include <QSignalSpy>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace quiv;

namespace {

bool ip(const char* arguments) {
    return QProcess::execute(u"ip"_s, QString::fromLatin1(arguments).split(u' ')) == 0;
}

} // namespace

class SystemChangesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theEndOfASleepIsTold() {
        AvahiTestDaemon system;
        QVERIFY(system.startBus());
        QDBusConnection loginManager = QDBusConnection::connectToBus(
            qEnvironmentVariable("DBUS_SYSTEM_BUS_ADDRESS"), u"login manager"_s);
        QVERIFY(loginManager.registerService(u"org.freedesktop.login1"_s));
        SystemChanges changes;
        QSignalSpy told(&changes, &SystemChanges::networkChanged);
        const auto tell = [&](bool begins) {
            auto message = QDBusMessage::createSignal(u"/org/freedesktop/login1"_s,
                                                      u"org.freedesktop.login1.Manager"_s,
                                                      u"PrepareForSleep"_s);
            message << begins;
            return loginManager.send(message);
        };
        QTRY_VERIFY((tell(false), told.size() > 0));
        const auto count = told.size();
        QVERIFY(tell(true));
        QVERIFY(tell(false));
        QTRY_VERIFY(told.size() > count);
    }

    void addressesThatComeAndGoAreTold() {
        SystemChanges changes; // there is no bus
        QSignalSpy told(&changes, &SystemChanges::networkChanged);
        QVERIFY(ip("address add 192.0.2.1/32 dev lo"));
        QTRY_COMPARE(told.size(), 1);
        QVERIFY(
            ip("address change 192.0.2.1/32 dev lo valid_lft 900 preferred_lft 900")); // renewed
        QVERIFY(ip("address del 192.0.2.1/32 dev lo"));
        QTRY_COMPARE(told.size(), 2);
    }

    void interfacesThatComeAndGoAreTold() {
        SystemChanges changes;
        const auto cable = [&] {
            const auto& interfaces = changes.interfaces();
            const auto found = std::ranges::find(interfaces, u"cable"_s, &NetworkInterface::name);
            return found == interfaces.end() ? NetworkInterface{} : *found;
        };
        QSignalSpy told(&changes, &SystemChanges::interfacesChanged);
        QVERIFY(ip("link add cable type veth peer name socket"));
        QTRY_COMPARE(cable().name, u"cable"_s);
        QVERIFY(!cable().isUp);
        QVERIFY(ip("link set cable up"));
        QVERIFY(ip("link set socket up"));
        QTRY_VERIFY(cable().isUp && cable().canMulticast && !cable().isLoopback);
        QVERIFY(ip("link set cable multicast off"));
        QTRY_VERIFY(!cable().canMulticast);
        QVERIFY(ip("address add 192.0.2.1/24 dev cable"));
        QTRY_VERIFY(cable().hasIpv4);
        QVERIFY(ip("link set socket down"));
        QTRY_VERIFY(!cable().isUp);
        QVERIFY(!told.isEmpty());
        QVERIFY(ip("link del cable"));
        QTRY_COMPARE(cable(), NetworkInterface{});
    }
};

QTEST_GUILESS_MAIN(SystemChangesTest)
#include "system_changes_test.moc"
