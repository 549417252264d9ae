#include <QTest> // first: moc stumbles over standard headers that come before any of Qt's

#include "platform/avahi/avahi_dns_sd.h"
#include "platform/avahi/avahi_outcome.h"
#include "platform/avahi/avahi_test_announcer.h"
#include "platform/avahi/avahi_test_daemon.h"

#include <QElapsedTimer>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>

using namespace Qt::StringLiterals;
using namespace quiv;
using namespace std::chrono_literals;

namespace {

constexpr int ReactionTime = 15000; // for a daemon to come or go and a service to be announced
const QString Type = u"_ombra._tcp."_s;
const QString Domain = u"local."_s;

// The sockets on the multicast DNS port, as the kernel names them: "socket:[4711]".
std::set<std::string> multicastDnsSockets() {
    std::set<std::string> sockets;
    for (const char* table : {"/proc/net/udp", "/proc/net/udp6"}) {
        std::ifstream lines(table);
        for (std::string line; std::getline(lines, line);) {
            const QList<QByteArray> fields =
                QByteArray::fromStdString(line).simplified().split(' ');
            if (fields.size() > 9 && fields[1].endsWith(":14E9"))
                sockets.insert("socket:[" + fields[9].toStdString() + "]");
        }
    }
    return sockets;
}

// How many of them this process has.
int ownMulticastDnsSockets() {
    const auto sockets = multicastDnsSockets();
    int count = 0;
    for (const auto& descriptor : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code gone; // such as the one that lists the directory
        count += sockets.contains(std::filesystem::read_symlink(descriptor, gone)) ? 1 : 0;
    }
    return count;
}

bool ip(const char* arguments) {
    return QProcess::execute(u"ip"_s, QString::fromLatin1(arguments).split(u' ')) == 0;
}

bool become(const AvahiConnection& connection, AvahiBackendKind kind) {
    return QTest::qWaitFor([&] { return connection.backendKind() == kind; }, ReactionTime);
}

} // namespace

// What happens when the daemon or the bus comes, goes or hangs.
class AvahiConnectionTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void followsTheDaemonWhileASearchRuns();
    void findsABusThatStartsLater();
    void findsServicesOfANetworkThatAppearsLater();
    void neverWaitsForADaemonThatHangs();

private:
    std::optional<AvahiTestDaemon> m_daemon;
};

void AvahiConnectionTest::init() {
    if (!m_daemon)
        m_daemon.emplace(); // one bus address for all cases
}

void AvahiConnectionTest::cleanup() {
    m_daemon->thaw();
    m_daemon->stopDaemon();
    m_daemon->stopBus();
}

void AvahiConnectionTest::followsTheDaemonWhileASearchRuns() {
    QVERIFY(m_daemon->startBus());
    QVERIFY(m_daemon->startDaemon());
    const auto connection = std::make_shared<AvahiConnection>();
    AvahiDnsSd browser(connection);
    QStringList names;
    browser.search(Type, Domain, [&](const FoundService& service) { names.append(service.name); });
    Outcome pending(browser.resolve(FoundService{u"Second"_s, Type, Domain}, 1min));

    QVERIFY(become(*connection, AvahiBackendKind::SystemDaemon));
    AvahiTestAnnouncer first({"First", "first.local", "192.0.2.1"});
    QTRY_COMPARE_WITH_TIMEOUT(names, QStringList{u"First"_s}, ReactionTime);
    QCOMPARE(ownMulticastDnsSockets(), 0);

    QVERIFY(m_daemon->stopDaemon());
    QVERIFY(become(*connection, AvahiBackendKind::Embedded));
    QVERIFY(ownMulticastDnsSockets() > 0);
    QVERIFY(!pending.isDone());
    AvahiTestAnnouncer second({"Second", "second.local", "192.0.2.2"});
    QTRY_VERIFY_WITH_TIMEOUT(names.contains(u"Second"_s), ReactionTime);
    QTRY_VERIFY_WITH_TIMEOUT(pending.isDone(), ReactionTime);
    QVERIFY(pending.value());
    QCOMPARE(pending.value()->addresses.first().toText(), u"192.0.2.2"_s);

    QVERIFY(m_daemon->startDaemon());
    QVERIFY(become(*connection, AvahiBackendKind::SystemDaemon));
    QCOMPARE(ownMulticastDnsSockets(), 0);
    AvahiTestAnnouncer third({"Third", "third.local", "192.0.2.3"});
    QTRY_VERIFY_WITH_TIMEOUT(names.contains(u"Third"_s), ReactionTime);
}

void AvahiConnectionTest::findsABusThatStartsLater() {
    const auto connection = std::make_shared<AvahiConnection>(100ms);
    AvahiDnsSd browser(connection);
    QStringList names;
    browser.search(Type, Domain, [&](const FoundService& service) { names.append(service.name); });
    QVERIFY(become(*connection, AvahiBackendKind::Embedded));

    QVERIFY(m_daemon->startBus());
    QVERIFY(m_daemon->startDaemon());
    QVERIFY(become(*connection, AvahiBackendKind::SystemDaemon));
    AvahiTestAnnouncer kitchen({"Kitchen", "kitchen.local"});
    QTRY_COMPARE_WITH_TIMEOUT(names, QStringList{u"Kitchen"_s}, ReactionTime);

    QVERIFY(m_daemon->stopBus());
    QVERIFY(become(*connection, AvahiBackendKind::Embedded));
}

void AvahiConnectionTest::findsServicesOfANetworkThatAppearsLater() {
    QVERIFY(ip("link set lo down"));
    const auto connection = std::make_shared<AvahiConnection>();
    AvahiDnsSd browser(connection);
    QStringList names;
    browser.search(Type, Domain, [&](const FoundService& service) { names.append(service.name); });
    QVERIFY(become(*connection, AvahiBackendKind::Embedded));

    QVERIFY(ip("link set lo up"));
    QVERIFY(ip("route add 224.0.0.0/4 dev lo"));
    AvahiTestAnnouncer kitchen({"Kitchen", "kitchen.local"});
    QTRY_COMPARE_WITH_TIMEOUT(names, QStringList{u"Kitchen"_s}, ReactionTime);
}

void AvahiConnectionTest::neverWaitsForADaemonThatHangs() {
    QVERIFY(m_daemon->startBus());
    QVERIFY(m_daemon->startDaemon());
    auto connection = std::make_shared<AvahiConnection>();
    std::optional<AvahiDnsSd> browser(connection);
    QVERIFY(become(*connection, AvahiBackendKind::SystemDaemon));
    m_daemon->freeze();

    QElapsedTimer timer;
    timer.start();
    browser->search(Type, Domain, [](const FoundService&) {});
    Outcome outcome(browser->resolve(FoundService{u"Kitchen"_s, Type, Domain}, 300ms));
    browser->stop();
    QVERIFY(timer.elapsed() < 2000);
    QTRY_VERIFY(outcome.isDone());
    QVERIFY(!outcome.value());

    timer.restart();
    browser.reset();
    connection.reset();
    QVERIFY(timer.elapsed() < 3000); // the library itself would wait for 25 seconds and more
}

QTEST_GUILESS_MAIN(AvahiConnectionTest)
#include "avahi_connection_test.moc"
