#include <QTest> // first: moc stumbles over standard headers that come before any of Qt's

#include "model/ombra_mac_model.h"
#include "platform/avahi/avahi_connection.h"
#include "platform/avahi/avahi_dns_sd.h"
#include "platform/avahi/avahi_test_daemon.h"
#include "platform/http/curl_http_session.h"
#include "simulator/simulator_process.h"
#include "support/fake_file_dialogs.h"
#include "support/fake_still_extractor.h"
#include "support/memory_settings.h"

using namespace Qt::StringLiterals;
using namespace quiv;
using quiv::simulator::SimulatorProcess;

namespace {

constexpr int PatienceMs = 20'000; // announcing alone takes seconds

// The model on the adapters of the program, but for the settings.
struct RealModel {
    explicit RealModel(AvahiBackendKind backend) {
        ready = QTest::qWaitFor([&] { return avahi->backendKind() == backend; });
        model.appear();
    }

    QStringList names() {
        QStringList result;
        for (const TVEndpoint& device : model.discovery()->discoveredDevices())
            result.append(device.name);
        return result;
    }

    SystemClock clock;
    MemorySettings settings;
    std::shared_ptr<AvahiConnection> avahi = std::make_shared<AvahiConnection>();
    AvahiDnsSd dnsSd{avahi};
    CurlHttpSession http{&dnsSd};
    FakeStillExtractor stills;
    MemoryLog log;
    FakeDesktopDialogs dialogs;
    OmbraMacModel model{{http, dnsSd, settings, clock, stills, log, dialogs.preferred}};
    bool ready = false;
};

// Starts an announced TV whose announced name and own name are the same.
bool startTv(SimulatorProcess& tv, const QString& name, QStringList more = {}) {
    more += {u"--name"_s, name, u"--generate"_s, u"5"_s};
    return tv.start(more, SimulatorProcess::Announcing::Embedded);
}

QJsonObject infoFault(const QString& kind, QJsonObject more = {}) {
    more[u"path"_s] = u"api/info"_s;
    more[u"kind"_s] = kind;
    return more;
}

} // namespace

// Announced TVs become entries of the list, through the embedded stack and through a daemon.
class RealDiscoveryTest : public QObject {
    Q_OBJECT

    AvahiTestDaemon m_daemon;

    static AvahiBackendKind backend() {
        QFETCH_GLOBAL(AvahiBackendKind, backend);
        return backend;
    }

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_daemon.startBus()); }
    void initTestCase_data() {
        QTest::addColumn<AvahiBackendKind>("backend");
        QTest::newRow("embedded stack") << AvahiBackendKind::Embedded;
        QTest::newRow("system daemon") << AvahiBackendKind::SystemDaemon;
    }
    void init() {
        if (backend() == AvahiBackendKind::SystemDaemon)
            QVERIFY(m_daemon.startDaemon());
    }
    void cleanup() { m_daemon.stopDaemon(); }

    void twoTvsAreFoundAndAChangedNameReachesTheList() {
        SimulatorProcess first;
        SimulatorProcess second;
        QVERIFY2(startTv(first, u"Attic"_s), qPrintable(first.errorText()));
        QVERIFY2(startTv(second, u"Bedroom"_s), qPrintable(second.errorText()));
        RealModel real(backend());
        QVERIFY(real.ready);
        QTRY_COMPARE_WITH_TIMEOUT(real.names(), QStringList({u"Attic"_s, u"Bedroom"_s}),
                                  PatienceMs);
        QTRY_COMPARE(real.model.library()->content().groupedFiles.isEmpty(), false);

        QVERIFY(first.setName(u"Cellar"_s));
        QVERIFY(first.announce({{u"serviceName"_s, u"Cellar"_s}}));
        QTRY_COMPARE_WITH_TIMEOUT(real.names(), QStringList({u"Bedroom"_s, u"Cellar"_s}),
                                  PatienceMs);
    }

    void aTvWithIPv6AloneIsListedAndReachedByItsHostName() {
        SimulatorProcess tv;
        QVERIFY2(startTv(tv, u"Six"_s, {u"--ipv6-only"_s, u"--host-name"_s, u"sixtv"_s}),
                 qPrintable(tv.errorText()));
        RealModel real(backend());
        QTRY_COMPARE_WITH_TIMEOUT(real.names(), QStringList(u"Six"_s), PatienceMs);
        QCOMPARE(real.model.selected()->device()->host, u"sixtv.local"_s);
        QTRY_VERIFY_WITH_TIMEOUT(!real.model.library()->content().groupedFiles.isEmpty(),
                                 PatienceMs);
    }

    void oddAndSilentTvsAreListedAsAnnouncedAndPortZeroIsNot() {
        const QString odd = u"Küche · TV\\2. \"Ünïcode\" <b>box</b> 📺 (living room…"_s + u"x)"_s;
        QVERIFY(odd.toUtf8().size() <= 63);
        const QString longest = odd + QString(63 - odd.toUtf8().size(), u'z');
        SimulatorProcess oddTv;
        SimulatorProcess silentTv;
        SimulatorProcess portless;
        QVERIFY2(startTv(oddTv, u"unused"_s, {u"--service-name"_s, longest}),
                 qPrintable(oddTv.errorText()));
        QVERIFY(oddTv.setFault(infoFault(u"status"_s, {{u"status"_s, 500}})));
        QVERIFY2(startTv(silentTv, u"Silent"_s), qPrintable(silentTv.errorText()));
        QVERIFY(silentTv.setFault(infoFault(u"hang"_s)));
        QVERIFY2(startTv(portless, u"Portless"_s, {u"--announce-port"_s, u"0"_s}),
                 qPrintable(portless.errorText()));
        RealModel real(backend());
        QTRY_COMPARE_WITH_TIMEOUT(real.names(), QStringList({longest, u"Silent"_s}), PatienceMs);
        QCOMPARE(portless.requests().size(), 0);
    }
};

QTEST_GUILESS_MAIN(RealDiscoveryTest)
#include "real_discovery_test.moc"
