#include <QTest> // first: moc stumbles over standard headers that come before any of Qt's

#include "platform/avahi/avahi_host_resolver.h"
#include "platform/avahi/avahi_outcome.h"
#include "platform/avahi/avahi_test_announcer.h"
#include "platform/avahi/avahi_test_daemon.h"

using namespace Qt::StringLiterals;
using namespace quiv;
using namespace std::chrono_literals;

// Every case through the embedded stack and through a daemon.
class AvahiHostResolverTest : public QObject {
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

    void prefersIPv4();
    void takesIPv6WhenThereIsNoOther();
    void remembersAnAddressUntilToldToForget();
    void givesUpOnUnknownHosts();
    void answersOnlyForLocalNames();
    void completesRequestsWhenDestroyed();

private:
    QString resolved(const QString& hostName);

    AvahiTestDaemon m_daemon;
    std::optional<AvahiHostResolver> m_resolver;
};

void AvahiHostResolverTest::init() {
    QFETCH_GLOBAL(AvahiBackendKind, backend);
    if (backend == AvahiBackendKind::SystemDaemon)
        QVERIFY(m_daemon.startDaemon());
    const auto connection = std::make_shared<AvahiConnection>();
    QTRY_COMPARE(connection->backendKind(), backend);
    m_resolver.emplace(connection);
}

void AvahiHostResolverTest::cleanup() {
    m_resolver.reset();
    QFETCH_GLOBAL(AvahiBackendKind, backend);
    if (backend == AvahiBackendKind::SystemDaemon)
        QVERIFY(m_daemon.stopDaemon());
}

// The address in text, empty when there is none.
QString AvahiHostResolverTest::resolved(const QString& hostName) {
    Outcome outcome(m_resolver->resolve(hostName, 5s));
    const bool done = QTest::qWaitFor([&] { return outcome.isDone(); }, 6000);
    return done && outcome.value() ? outcome.value()->toText() : QString();
}

void AvahiHostResolverTest::prefersIPv4() {
    AvahiTestAnnouncer announcer({"TV", "tv.local", "192.0.2.7", "2001:db8::7"});
    QCOMPARE(resolved(u"TV.local."_s), u"192.0.2.7"_s);
}

void AvahiHostResolverTest::takesIPv6WhenThereIsNoOther() {
    AvahiTestAnnouncer announcer({"TV", "modern.local", {}, "2001:db8::7"});
    QCOMPARE(resolved(u"modern.local"_s), u"2001:db8::7"_s);
}

void AvahiHostResolverTest::remembersAnAddressUntilToldToForget() {
    const QString hostName = u"moving.local"_s;
    std::optional<AvahiTestAnnouncer> before(
        std::in_place, AvahiTestAnnouncer::Service{"TV", "moving.local", "192.0.2.7"});
    QCOMPARE(resolved(hostName), u"192.0.2.7"_s);
    before.reset();
    AvahiTestAnnouncer after({"TV", "moving.local", "192.0.2.8"});
    QCOMPARE(resolved(hostName), u"192.0.2.7"_s);

    const auto movedAway = [&] {
        m_resolver->forget(u"Moving.local."_s);
        return resolved(hostName) == u"192.0.2.8"_s;
    };
    QVERIFY(QTest::qWaitFor(movedAway, 10000));
}

void AvahiHostResolverTest::givesUpOnUnknownHosts() {
    Outcome outcome(m_resolver->resolve(u"nobody.local"_s, 300ms));
    QTRY_VERIFY(outcome.isDone());
    QVERIFY(!outcome.value());
}

void AvahiHostResolverTest::answersOnlyForLocalNames() {
    Outcome outcome(m_resolver->resolve(u"tv.example"_s, 1h));
    QVERIFY(outcome.isDone());
    QVERIFY(!outcome.value());
}

void AvahiHostResolverTest::completesRequestsWhenDestroyed() {
    Outcome outcome(m_resolver->resolve(u"nobody.local"_s, 1h));
    m_resolver.reset();
    QVERIFY(!outcome.isDone());
    QTRY_COMPARE(outcome.completions(), 1);
    QVERIFY(!outcome.value());
}

QTEST_GUILESS_MAIN(AvahiHostResolverTest)
#include "avahi_host_resolver_test.moc"
