#include <QTest> // first: moc stumbles over standard headers that come before any of Qt's

#include "platform/avahi/avahi_dns_sd.h"
#include "platform/avahi/avahi_test_announcer.h"
#include "platform/avahi/avahi_test_daemon.h"
#include "support/outcome.h"
#include "support/test_main.h"

#include <QElapsedTimer>
#include <filesystem>
#include <fstream>
#include <netinet/in.h>
#include <set>
#include <string>
#include <sys/socket.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace quiv;
using namespace std::chrono_literals;

namespace {

constexpr int ReactionTime = 15000; // for a daemon to come or go and a service to be announced
const QString Type = u"_ombra._tcp."_s;
const QString Domain = u"local."_s;

FoundService serviceNamed(const QString& name) {
    return {name, Type, Domain};
}

// A search and what it found.
struct Search {
    explicit Search(ServiceBrowser& browser) {
        browser.search(Type, Domain,
                       [this](const FoundService& service) { names.append(service.name); });
    }
    Search(const Search&) = delete;
    Search& operator=(const Search&) = delete;

    QStringList names;
};

bool arrives(const Outcome<ResolvedService>& outcome) {
    return QTest::qWaitFor([&] { return outcome.isDone(); }, 9000) && outcome.value();
}

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

// Finding and resolving; every case through the embedded stack and through a daemon.
class AvahiDnsSdTest : public QObject {
    Q_OBJECT

public:
    explicit AvahiDnsSdTest(AvahiTestDaemon& daemon) : m_daemon(daemon) {}

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_daemon.startBus()); }
    void initTestCase_data() {
        QTest::addColumn<AvahiBackendKind>("backend");
        QTest::newRow("embedded stack") << AvahiBackendKind::Embedded;
        QTest::newRow("system daemon") << AvahiBackendKind::SystemDaemon;
    }
    void cleanupTestCase() { QVERIFY(m_daemon.stopBus()); }
    void init() {
        QFETCH_GLOBAL(AvahiBackendKind, backend);
        if (backend == AvahiBackendKind::SystemDaemon)
            QVERIFY(m_daemon.startDaemon());
        m_connection = std::make_shared<AvahiConnection>();
        m_dnsSd.emplace(m_connection);
        QTRY_COMPARE(m_connection->backendKind(), backend);
    }

    void cleanup() {
        m_dnsSd.reset();
        m_connection.reset();
        QFETCH_GLOBAL(AvahiBackendKind, backend);
        if (backend == AvahiBackendKind::SystemDaemon)
            QVERIFY(m_daemon.stopDaemon());
    }

    void findsTwoServicesOnceEach() {
        Search search(*m_dnsSd);
        const AvahiTestAnnouncer kitchen({"Kitchen", "kitchen.local"});
        const AvahiTestAnnouncer bedroom({"Bedroom", "bedroom.local", "192.0.2.8"});
        QTRY_VERIFY(search.names.contains(u"Kitchen"_s));
        QTRY_VERIFY(search.names.contains(u"Bedroom"_s));

        // Whatever else was to be said of these two has been said once a later one is found.
        const AvahiTestAnnouncer later({"Later", "later.local", "192.0.2.9"});
        QTRY_VERIFY(search.names.contains(u"Later"_s));
        QCOMPARE(search.names.size(), 3);
    }

    void findsAServiceUnderItsNewName() {
        Search search(*m_dnsSd);
        std::optional<AvahiTestAnnouncer> before(
            std::in_place, AvahiTestAnnouncer::Service{"Old name", "tv.local"});
        QTRY_COMPARE(search.names, QStringList{u"Old name"_s});
        before.reset();
        const AvahiTestAnnouncer after({"New name", "tv.local"});
        QTRY_COMPARE(search.names, (QStringList{u"Old name"_s, u"New name"_s}));
    }

    void findsAServiceThatCameBack() {
        const AvahiTestAnnouncer::Service restless{"Restless", "tv.local"};
        int departures = 0;
        const AvahiSubscription departure = m_connection->ask(
            SearchQuestion{"_ombra._tcp", "local"}, [&](const AvahiAnswer& answer) {
                departures += std::holds_alternative<ServiceGone>(answer) ? 1 : 0;
            });
        Search search(*m_dnsSd);
        std::optional<AvahiTestAnnouncer> announcer(std::in_place, restless);
        QTRY_COMPARE(search.names.size(), 1);
        announcer.reset();
        QTRY_VERIFY(departures > 0);
        announcer.emplace(restless);
        QTRY_COMPARE(search.names.size(), 2);
    }

    void findsNothingAfterStop() {
        Search stopped(*m_dnsSd);
        m_dnsSd->stop();
        AvahiDnsSd other(m_connection);
        Search search(other);
        const AvahiTestAnnouncer announcer({"Kitchen", "kitchen.local"});
        QTRY_COMPARE(search.names.size(), 1);
        QVERIFY(stopped.names.isEmpty());
    }

    void resolvesToTheIPv4Address() {
        Outcome outcome(m_dnsSd->resolve(serviceNamed(u"Kitchen"_s), 8s));
        const AvahiTestAnnouncer announcer(
            {"Kitchen", "kitchen.local", "192.0.2.7", "2001:db8::7", 4711});
        QVERIFY(arrives(outcome));
        QCOMPARE(outcome.value()->name, u"Kitchen"_s);
        QCOMPARE(outcome.value()->addresses.first().toText(), u"192.0.2.7"_s);
        QCOMPARE(outcome.value()->hostName.value(), u"kitchen.local"_s);
        QCOMPARE(outcome.value()->port, 4711);
    }

    void resolvesToTheIPv6AddressWhenThereIsNoOther() {
        Outcome outcome(m_dnsSd->resolve(serviceNamed(u"Modern"_s), 8s));
        const AvahiTestAnnouncer announcer({"Modern", "modern.local", {}, "fe80::7", 0});
        QVERIFY(arrives(outcome));
        const HostAddress address = outcome.value()->addresses.value(0);
        QCOMPARE(address.toText(), u"fe80::7"_s);
        QVERIFY(address.scope > 0);
        QCOMPARE(outcome.value()->addresses.size(), 1);
        QCOMPARE(outcome.value()->hostName.value(), u"modern.local"_s);
        QCOMPARE(outcome.value()->port, 0);
    }

    void findsAndResolvesTheOddestName() {
        const QString name = u" Küche. links\\rechts \\046.. \"<b>TV</b>\" 📺 %20&#x41; 电视."_s;
        QCOMPARE(name.toUtf8().size(), 63);
        Search search(*m_dnsSd);
        const AvahiTestAnnouncer announcer({name.toUtf8(), "tv.local"});
        QTRY_COMPARE(search.names, QStringList{name});
        Outcome outcome(m_dnsSd->resolve(serviceNamed(name), 8s));
        QVERIFY(arrives(outcome));
        QCOMPARE(outcome.value()->name, name);
    }

    void resolvesWhatIsAnnouncedLate() {
        Outcome outcome(m_dnsSd->resolve(serviceNamed(u"Late"_s), 15s));
        // Avahi itself gives up on a service after five seconds.
        Outcome earlier(m_dnsSd->resolve(serviceNamed(u"Late"_s), 6s));
        QTRY_VERIFY_WITH_TIMEOUT(earlier.isDone(), 7000);
        QVERIFY(!outcome.isDone());
        const AvahiTestAnnouncer announcer({"Late", "late.local"});
        QTRY_VERIFY_WITH_TIMEOUT(outcome.isDone(), 10000);
        QVERIFY(outcome.value());
    }

    void doesNotResolveWhatIsGone() {
        QElapsedTimer timer;
        timer.start();
        Outcome outcome(m_dnsSd->resolve(serviceNamed(u"Gone"_s), 700ms));
        QTRY_VERIFY(outcome.isDone());
        QVERIFY(timer.elapsed() >= 700);
        QVERIFY(!outcome.value());

        Outcome elsewhere(m_dnsSd->resolve(u"tv.example"_s, 1h));
        QVERIFY(elsewhere.isDone());
        QVERIFY(!elsewhere.value());
        Outcome unknown(m_dnsSd->resolve(u"nobody.local"_s, 300ms));
        QTRY_VERIFY(unknown.isDone());
        QVERIFY(!unknown.value());
    }

    void followsWhatMoves() {
        const ResolvedService before{
            u"Kitchen"_s, {HostAddress{.bytes = {192, 0, 2, 7}}}, u"kitchen.local"_s, 8080};
        std::optional<AvahiTestAnnouncer> announcer(
            std::in_place, AvahiTestAnnouncer::Service{"Kitchen", "kitchen.local"});
        Outcome first(m_dnsSd->resolve(serviceNamed(u"Kitchen"_s), 8s));
        QTRY_COMPARE_WITH_TIMEOUT(first.value(), std::optional(before), 9000);
        Outcome next(m_dnsSd->resolve(serviceNamed(u"Kitchen"_s), 1h, before));
        announcer.reset();
        announcer.emplace(AvahiTestAnnouncer::Service{"Kitchen", "den.local", "192.0.2.8", {}, 81});
        QTRY_VERIFY_WITH_TIMEOUT(next.isDone(), ReactionTime);
        QCOMPARE(next.value()->addresses.first().toText(), u"192.0.2.8"_s);
        QCOMPARE(next.value()->addresses.size(), 1);
        QCOMPARE(next.value()->port, 81);
    }

    void completesRequestsWhenDestroyed() {
        Search search(*m_dnsSd);
        Outcome service(m_dnsSd->resolve(serviceNamed(u"Gone"_s), 1h));
        Outcome host(m_dnsSd->resolve(u"nobody.local"_s, 1h));
        m_dnsSd.reset();
        QVERIFY(!service.isDone() && !host.isDone());
        QTRY_VERIFY(service.isDone() && host.isDone());
        QVERIFY(!service.value() && !host.value());
    }

    void forgetsCancelledRequests() {
        Outcome cancelled(m_dnsSd->resolve(serviceNamed(u"Kitchen"_s), 8s));
        Outcome outcome(m_dnsSd->resolve(serviceNamed(u"Kitchen"_s), 8s));
        const AvahiTestAnnouncer announcer({"Kitchen", "kitchen.local"});
        cancelled.cancel();
        QVERIFY(arrives(outcome));
        QVERIFY(!cancelled.isDone());
    }

    void canBeDestroyedByWhatItFound() {
        int found = 0;
        m_connection.reset(); // the browser is the last to use it
        m_dnsSd->search(Type, Domain, [&](const FoundService&) {
            ++found;
            m_dnsSd.reset();
        });
        const AvahiTestAnnouncer kitchen({"Kitchen", "kitchen.local"});
        const AvahiTestAnnouncer bedroom({"Bedroom", "bedroom.local", "192.0.2.8"});
        QTRY_COMPARE(found, 1);
        QVERIFY(!m_dnsSd);
    }

    void prefersAHostsIPv4Address() {
        const AvahiTestAnnouncer announcer({"TV", "tv.local", "192.0.2.7", "2001:db8::7"});
        QCOMPARE(addressOf(u"TV.local."_s), u"192.0.2.7"_s);
        const AvahiTestAnnouncer modern({"Modern", "modern.local", {}, "2001:db8::8"});
        QCOMPARE(addressOf(u"modern.local"_s), u"2001:db8::8"_s);
    }

    void remembersAnAddressUntilToldToForget() {
        const QString hostName = u"moving.local"_s;
        std::optional<AvahiTestAnnouncer> before(
            std::in_place, AvahiTestAnnouncer::Service{"TV", "moving.local", "192.0.2.7"});
        QCOMPARE(addressOf(hostName), u"192.0.2.7"_s);
        before.reset();
        const AvahiTestAnnouncer after({"TV", "moving.local", "192.0.2.8"});
        QCOMPARE(addressOf(hostName), u"192.0.2.7"_s);

        const auto movedAway = [&] {
            m_dnsSd->forget(u"Moving.local."_s);
            return addressOf(hostName) == u"192.0.2.8"_s;
        };
        QVERIFY(QTest::qWaitFor(movedAway, 10000));
    }

private:
    // The host's address in text, or an empty string if it has none.
    QString addressOf(const QString& hostName) {
        Outcome outcome(m_dnsSd->resolve(hostName, 5s));
        const bool done = QTest::qWaitFor([&] { return outcome.isDone(); }, 6000);
        return done && outcome.value() ? outcome.value()->toText() : QString();
    }

    AvahiTestDaemon& m_daemon;
    std::shared_ptr<AvahiConnection> m_connection;
    std::optional<AvahiDnsSd> m_dnsSd;
};

// What happens when the daemon or the bus comes, goes or hangs.
class AvahiConnectionTest : public QObject {
    Q_OBJECT

public:
    explicit AvahiConnectionTest(AvahiTestDaemon& daemon) : m_daemon(daemon) {}

private Q_SLOTS:
    void cleanup() {
        m_daemon.thaw();
        m_daemon.stopDaemon();
        m_daemon.stopBus();
    }

    void followsTheDaemonWhileASearchRuns() {
        QVERIFY(m_daemon.startBus());
        QVERIFY(m_daemon.startDaemon());
        const auto connection = std::make_shared<AvahiConnection>();
        AvahiDnsSd browser(connection);
        Search search(browser);
        Outcome pending(browser.resolve(serviceNamed(u"Second"_s), 1min));

        QVERIFY(become(*connection, AvahiBackendKind::SystemDaemon));
        const AvahiTestAnnouncer first({"First", "first.local", "192.0.2.1"});
        QTRY_COMPARE_WITH_TIMEOUT(search.names, QStringList{u"First"_s}, ReactionTime);
        QCOMPARE(ownMulticastDnsSockets(), 0);

        QVERIFY(m_daemon.stopDaemon());
        QVERIFY(become(*connection, AvahiBackendKind::Embedded));
        QVERIFY(ownMulticastDnsSockets() > 0);
        QVERIFY(!pending.isDone());
        const AvahiTestAnnouncer second({"Second", "second.local", "192.0.2.2"});
        QTRY_VERIFY_WITH_TIMEOUT(search.names.contains(u"Second"_s), ReactionTime);
        QTRY_VERIFY_WITH_TIMEOUT(pending.isDone(), ReactionTime);
        QVERIFY(pending.value());
        QCOMPARE(pending.value()->addresses.first().toText(), u"192.0.2.2"_s);

        QVERIFY(m_daemon.startDaemon());
        QVERIFY(become(*connection, AvahiBackendKind::SystemDaemon));
        QCOMPARE(ownMulticastDnsSockets(), 0);
        const AvahiTestAnnouncer third({"Third", "third.local", "192.0.2.3"});
        QTRY_VERIFY_WITH_TIMEOUT(search.names.contains(u"Third"_s), ReactionTime);
    }

    void findsABusThatStartsLater() {
        const auto connection = std::make_shared<AvahiConnection>(100ms);
        AvahiDnsSd browser(connection);
        Search search(browser);
        QVERIFY(become(*connection, AvahiBackendKind::Embedded));

        QVERIFY(m_daemon.startBus());
        QVERIFY(m_daemon.startDaemon());
        QVERIFY(become(*connection, AvahiBackendKind::SystemDaemon));
        const AvahiTestAnnouncer kitchen({"Kitchen", "kitchen.local"});
        QTRY_COMPARE_WITH_TIMEOUT(search.names, QStringList{u"Kitchen"_s}, ReactionTime);

        QVERIFY(m_daemon.stopBus());
        QVERIFY(become(*connection, AvahiBackendKind::Embedded));
    }

    void findsServicesOfANetworkThatAppearsLater() {
        QVERIFY(ip("link set lo down"));
        const auto connection = std::make_shared<AvahiConnection>();
        AvahiDnsSd browser(connection);
        Search search(browser);
        QVERIFY(become(*connection, AvahiBackendKind::Embedded));

        QVERIFY(ip("link set lo up"));
        QVERIFY(ip("route add 224.0.0.0/4 dev lo"));
        const AvahiTestAnnouncer kitchen({"Kitchen", "kitchen.local"});
        QTRY_COMPARE_WITH_TIMEOUT(search.names, QStringList{u"Kitchen"_s}, ReactionTime);
    }

    void tellsThatNobodyCanAnswerUntilSomebodyCan() {
        sockaddr_in6 port{}; // of IPv4, too
        port.sin6_family = AF_INET6;
        port.sin6_port = htons(5353);
        const int other = ::socket(AF_INET6, SOCK_DGRAM, 0); // which does not share it
        QCOMPARE(::bind(other, reinterpret_cast<const sockaddr*>(&port), sizeof port), 0);
        const auto connection = std::make_shared<AvahiConnection>(100ms);
        QCOMPARE(connection->backendKind(), AvahiBackendKind::Undecided);
        auto told = AvahiBackendKind::Undecided;
        connection->setBackendListener([&] { told = connection->backendKind(); });
        QTRY_COMPARE(told, AvahiBackendKind::None);
        ::close(other);
        QTRY_COMPARE(told, AvahiBackendKind::Embedded);
    }

    void neverWaitsForADaemonThatHangs() {
        QVERIFY(m_daemon.startBus());
        QVERIFY(m_daemon.startDaemon());
        auto connection = std::make_shared<AvahiConnection>();
        std::optional<AvahiDnsSd> browser(connection);
        QVERIFY(become(*connection, AvahiBackendKind::SystemDaemon));
        m_daemon.freeze();

        QElapsedTimer timer;
        timer.start();
        browser->search(Type, Domain, [](const FoundService&) {});
        Outcome outcome(browser->resolve(serviceNamed(u"Kitchen"_s), 300ms));
        browser->stop();
        QVERIFY(timer.elapsed() < 2000);
        QTRY_VERIFY(outcome.isDone());
        QVERIFY(!outcome.value());

        timer.restart();
        browser.reset();
        connection.reset();
        QVERIFY(timer.elapsed() < 3000); // the library itself would wait for 25 seconds and more
    }

private:
    AvahiTestDaemon& m_daemon;
};

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    AvahiTestDaemon daemon; // the bus library looks for its address once
    AvahiDnsSdTest dnsSd(daemon);
    AvahiConnectionTest connection(daemon);
    return quiv::runTests(argc, argv, {&dnsSd, &connection});
}

#include "avahi_dns_sd_test.moc"
