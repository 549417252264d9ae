#include <QTest> // first: moc stumbles over standard headers that come before any of Qt's

#include "platform/avahi/avahi_dns_sd.h"
#include "platform/avahi/avahi_outcome.h"
#include "platform/avahi/avahi_test_announcer.h"
#include "platform/avahi/avahi_test_daemon.h"

#include <QElapsedTimer>

using namespace Qt::StringLiterals;
using namespace quiv;
using namespace std::chrono_literals;

namespace {

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

} // namespace

// Every case through the embedded stack and through a daemon.
class AvahiDnsSdTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_daemon.startBus()); }
    void initTestCase_data() {
        QTest::addColumn<AvahiBackendKind>("backend");
        QTest::newRow("embedded stack") << AvahiBackendKind::Embedded;
        QTest::newRow("system daemon") << AvahiBackendKind::SystemDaemon;
    }
    void init();
    void cleanup();

    void findsTwoServicesOnceEach();
    void findsAServiceUnderItsNewName();
    void findsAServiceThatCameBack();
    void findsNothingAfterStop();
    void resolvesToTheIPv4Address();
    void resolvesToTheIPv6AddressWhenThereIsNoOther();
    void passesOnPortZero();
    void findsAndResolvesTheOddestName();
    void resolvesWhatIsAnnouncedLate();
    void doesNotResolveWhatIsGone();
    void followsWhatMoves();
    void completesRequestsWhenDestroyed();
    void forgetsCancelledRequests();
    void canBeDestroyedByWhatItFound();
    void prefersAHostsIPv4Address();
    void takesAHostsIPv6AddressWhenThereIsNoOther();
    void remembersAnAddressUntilToldToForget();
    void findsOnlyLocalHosts();

private:
    QString addressOf(const QString& hostName);

    AvahiTestDaemon m_daemon;
    std::shared_ptr<AvahiConnection> m_connection;
    std::optional<AvahiDnsSd> m_dnsSd;
};

void AvahiDnsSdTest::init() {
    QFETCH_GLOBAL(AvahiBackendKind, backend);
    if (backend == AvahiBackendKind::SystemDaemon)
        QVERIFY(m_daemon.startDaemon());
    m_connection = std::make_shared<AvahiConnection>();
    m_dnsSd.emplace(m_connection);
    QTRY_COMPARE(m_connection->backendKind(), backend);
}

void AvahiDnsSdTest::cleanup() {
    m_dnsSd.reset();
    m_connection.reset();
    QFETCH_GLOBAL(AvahiBackendKind, backend);
    if (backend == AvahiBackendKind::SystemDaemon)
        QVERIFY(m_daemon.stopDaemon());
}

void AvahiDnsSdTest::findsTwoServicesOnceEach() {
    Search search(*m_dnsSd);
    AvahiTestAnnouncer kitchen({"Kitchen", "kitchen.local"});
    AvahiTestAnnouncer bedroom({"Bedroom", "bedroom.local", "192.0.2.8"});
    QTRY_VERIFY(search.names.contains(u"Kitchen"_s));
    QTRY_VERIFY(search.names.contains(u"Bedroom"_s));

    // Whatever else was to be said of these two has been said once a later one is found.
    AvahiTestAnnouncer later({"Later", "later.local", "192.0.2.9"});
    QTRY_VERIFY(search.names.contains(u"Later"_s));
    QCOMPARE(search.names.size(), 3);
}

void AvahiDnsSdTest::findsAServiceUnderItsNewName() {
    Search search(*m_dnsSd);
    std::optional<AvahiTestAnnouncer> before(std::in_place,
                                             AvahiTestAnnouncer::Service{"Old name", "tv.local"});
    QTRY_COMPARE(search.names, QStringList{u"Old name"_s});
    before.reset();
    AvahiTestAnnouncer after({"New name", "tv.local"});
    QTRY_COMPARE(search.names, (QStringList{u"Old name"_s, u"New name"_s}));
}

void AvahiDnsSdTest::findsAServiceThatCameBack() {
    const AvahiTestAnnouncer::Service restless{"Restless", "tv.local"};
    int departures = 0;
    const AvahiSubscription departure =
        m_connection->ask(SearchQuestion{"_ombra._tcp", "local"}, [&](const AvahiAnswer& answer) {
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

void AvahiDnsSdTest::findsNothingAfterStop() {
    Search stopped(*m_dnsSd);
    m_dnsSd->stop();
    AvahiDnsSd other(m_connection);
    Search search(other);
    AvahiTestAnnouncer announcer({"Kitchen", "kitchen.local"});
    QTRY_COMPARE(search.names.size(), 1);
    QVERIFY(stopped.names.isEmpty());
}

void AvahiDnsSdTest::resolvesToTheIPv4Address() {
    Outcome outcome(m_dnsSd->resolve(serviceNamed(u"Kitchen"_s), 8s));
    AvahiTestAnnouncer announcer({"Kitchen", "kitchen.local", "192.0.2.7", "2001:db8::7", 4711});
    QTRY_VERIFY_WITH_TIMEOUT(outcome.isDone(), 9000);
    QVERIFY(outcome.value());
    QCOMPARE(outcome.value()->name, u"Kitchen"_s);
    QCOMPARE(outcome.value()->addresses.first().toText(), u"192.0.2.7"_s);
    QCOMPARE(outcome.value()->hostName.value(), u"kitchen.local"_s);
    QCOMPARE(outcome.value()->port, 4711);
}

void AvahiDnsSdTest::resolvesToTheIPv6AddressWhenThereIsNoOther() {
    Outcome outcome(m_dnsSd->resolve(serviceNamed(u"Modern"_s), 8s));
    AvahiTestAnnouncer announcer({"Modern", "modern.local", {}, "fe80::7"});
    QTRY_VERIFY_WITH_TIMEOUT(outcome.isDone(), 9000);
    QVERIFY(outcome.value());
    const HostAddress address = outcome.value()->addresses.value(0);
    QCOMPARE(address.toText(), u"fe80::7"_s);
    QVERIFY(address.scope > 0);
    QCOMPARE(outcome.value()->addresses.size(), 1);
    QCOMPARE(outcome.value()->hostName.value(), u"modern.local"_s);
}

void AvahiDnsSdTest::passesOnPortZero() {
    Outcome outcome(m_dnsSd->resolve(serviceNamed(u"Portless"_s), 8s));
    AvahiTestAnnouncer announcer({"Portless", "tv.local", "192.0.2.7", {}, 0});
    QTRY_VERIFY_WITH_TIMEOUT(outcome.isDone(), 9000);
    QVERIFY(outcome.value());
    QCOMPARE(outcome.value()->port, 0);
}

void AvahiDnsSdTest::findsAndResolvesTheOddestName() {
    const QString name = u" Küche. links\\rechts \\046.. \"<b>TV</b>\" 📺 %20&#x41; 电视."_s;
    QCOMPARE(name.toUtf8().size(), 63);
    Search search(*m_dnsSd);
    AvahiTestAnnouncer announcer({name.toUtf8(), "tv.local"});
    QTRY_COMPARE(search.names, QStringList{name});
    Outcome outcome(m_dnsSd->resolve(serviceNamed(name), 8s));
    QTRY_VERIFY_WITH_TIMEOUT(outcome.isDone(), 9000);
    QVERIFY(outcome.value());
    QCOMPARE(outcome.value()->name, name);
}

void AvahiDnsSdTest::resolvesWhatIsAnnouncedLate() {
    Outcome outcome(m_dnsSd->resolve(serviceNamed(u"Late"_s), 15s));
    // Avahi itself gives up on a service after five seconds.
    Outcome earlier(m_dnsSd->resolve(serviceNamed(u"Late"_s), 6s));
    QTRY_VERIFY_WITH_TIMEOUT(earlier.isDone(), 7000);
    QVERIFY(!outcome.isDone());
    AvahiTestAnnouncer announcer({"Late", "late.local"});
    QTRY_VERIFY_WITH_TIMEOUT(outcome.isDone(), 10000);
    QVERIFY(outcome.value());
}

void AvahiDnsSdTest::doesNotResolveWhatIsGone() {
    QElapsedTimer timer;
    timer.start();
    Outcome outcome(m_dnsSd->resolve(serviceNamed(u"Gone"_s), 700ms));
    QTRY_VERIFY(outcome.isDone());
    QVERIFY(timer.elapsed() >= 700);
    QVERIFY(!outcome.value());
}

void AvahiDnsSdTest::followsWhatMoves() {
    const ResolvedService before{
        u"Kitchen"_s, {HostAddress{.bytes = {192, 0, 2, 7}}}, u"kitchen.local"_s, 8080};
    std::optional<AvahiTestAnnouncer> announcer(
        std::in_place, AvahiTestAnnouncer::Service{"Kitchen", "kitchen.local"});
    Outcome first(m_dnsSd->resolve(serviceNamed(u"Kitchen"_s), 8s));
    QTRY_COMPARE_WITH_TIMEOUT(first.value(), std::optional(before), 9000);
    Outcome next(m_dnsSd->resolve(serviceNamed(u"Kitchen"_s), 1h, before));
    announcer.reset();
    announcer.emplace(AvahiTestAnnouncer::Service{"Kitchen", "den.local", "192.0.2.8", {}, 81});
    QTRY_VERIFY_WITH_TIMEOUT(next.isDone(), 15000);
    QCOMPARE(next.value()->addresses.first().toText(), u"192.0.2.8"_s);
    QCOMPARE(next.value()->addresses.size(), 1);
    QCOMPARE(next.value()->port, 81);
}

void AvahiDnsSdTest::completesRequestsWhenDestroyed() {
    Search search(*m_dnsSd);
    Outcome service(m_dnsSd->resolve(serviceNamed(u"Gone"_s), 1h));
    Outcome host(m_dnsSd->resolve(u"nobody.local"_s, 1h));
    m_dnsSd.reset();
    QVERIFY(!service.isDone() && !host.isDone());
    QTRY_COMPARE(service.completions(), 1);
    QTRY_COMPARE(host.completions(), 1);
    QVERIFY(!service.value() && !host.value());
}

void AvahiDnsSdTest::forgetsCancelledRequests() {
    Outcome cancelled(m_dnsSd->resolve(serviceNamed(u"Kitchen"_s), 8s));
    Outcome outcome(m_dnsSd->resolve(serviceNamed(u"Kitchen"_s), 8s));
    AvahiTestAnnouncer announcer({"Kitchen", "kitchen.local"});
    cancelled.cancel();
    QTRY_VERIFY_WITH_TIMEOUT(outcome.isDone(), 9000);
    QVERIFY(outcome.value());
    QVERIFY(!cancelled.isDone());
}

void AvahiDnsSdTest::canBeDestroyedByWhatItFound() {
    int found = 0;
    m_connection.reset(); // the browser is the last to use it
    m_dnsSd->search(Type, Domain, [&](const FoundService&) {
        ++found;
        m_dnsSd.reset();
    });
    AvahiTestAnnouncer kitchen({"Kitchen", "kitchen.local"});
    AvahiTestAnnouncer bedroom({"Bedroom", "bedroom.local", "192.0.2.8"});
    QTRY_COMPARE(found, 1);
    QVERIFY(!m_dnsSd);
}

// The host's address in text, or an empty string if it has none.
QString AvahiDnsSdTest::addressOf(const QString& hostName) {
    Outcome outcome(m_dnsSd->resolve(hostName, 5s));
    const bool done = QTest::qWaitFor([&] { return outcome.isDone(); }, 6000);
    return done && outcome.value() ? outcome.value()->toText() : QString();
}

void AvahiDnsSdTest::prefersAHostsIPv4Address() {
    AvahiTestAnnouncer announcer({"TV", "tv.local", "192.0.2.7", "2001:db8::7"});
    QCOMPARE(addressOf(u"TV.local."_s), u"192.0.2.7"_s);
}

void AvahiDnsSdTest::takesAHostsIPv6AddressWhenThereIsNoOther() {
    AvahiTestAnnouncer announcer({"TV", "modern.local", {}, "2001:db8::7"});
    QCOMPARE(addressOf(u"modern.local"_s), u"2001:db8::7"_s);
}

void AvahiDnsSdTest::remembersAnAddressUntilToldToForget() {
    const QString hostName = u"moving.local"_s;
    std::optional<AvahiTestAnnouncer> before(
        std::in_place, AvahiTestAnnouncer::Service{"TV", "moving.local", "192.0.2.7"});
    QCOMPARE(addressOf(hostName), u"192.0.2.7"_s);
    before.reset();
    AvahiTestAnnouncer after({"TV", "moving.local", "192.0.2.8"});
    QCOMPARE(addressOf(hostName), u"192.0.2.7"_s);

    const auto movedAway = [&] {
        m_dnsSd->forget(u"Moving.local."_s);
        return addressOf(hostName) == u"192.0.2.8"_s;
    };
    QVERIFY(QTest::qWaitFor(movedAway, 10000));
}

void AvahiDnsSdTest::findsOnlyLocalHosts() {
    Outcome outcome(m_dnsSd->resolve(u"tv.example"_s, 1h));
    QVERIFY(outcome.isDone());
    QVERIFY(!outcome.value());
    Outcome unknown(m_dnsSd->resolve(u"nobody.local"_s, 300ms));
    QTRY_VERIFY(unknown.isDone());
    QVERIFY(!unknown.value());
}

QTEST_GUILESS_MAIN(AvahiDnsSdTest)
#include "avahi_dns_sd_test.moc"
