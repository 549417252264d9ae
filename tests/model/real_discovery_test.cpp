#include <QTest> // first: moc stumbles over standard headers that come before any of Qt's

#include "model/ombra_mac_model.h"
#include "platform/avahi/avahi_connection.h"
#include "platform/avahi/avahi_host_resolver.h"
#include "platform/avahi/avahi_service_browser.h"
#include "platform/avahi/avahi_test_daemon.h"
#include "platform/http/curl_http_session.h"
#include "simulator/simulator_process.h"
#include "support/fake_file_dialogs.h"
#include "support/fake_still_extractor.h"
#include "support/memory_settings.h"

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
    AvahiHostResolver resolver{avahi};
    AvahiServiceBrowser browser{avahi};
    CurlHttpSession http{&resolver};
    FakeStillExtractor stills;
    MemoryLog log;
    FakeDesktopDialogs dialogs;
    OmbraMacModel model{{http, browser, settings, clock, stills, log, dialogs.preferred}};
    bool ready = false;
};

// Starts an announced TV whose announced name and own name are the same.
bool startTv(SimulatorProcess& tv, const QString& name, QStringList more = {}) {
    more += {QStringLiteral("--name"), name, QStringLiteral("--generate"), QStringLiteral("5")};
    return tv.start(more, SimulatorProcess::Announcing::Embedded);
}

QJsonObject infoFault(const QString& kind, QJsonObject more = {}) {
    more[QStringLiteral("path")] = QStringLiteral("api/info");
    more[QStringLiteral("kind")] = kind;
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
        QVERIFY2(startTv(first, QStringLiteral("Attic")), qPrintable(first.errorText()));
        QVERIFY2(startTv(second, QStringLiteral("Bedroom")), qPrintable(second.errorText()));
        RealModel real(backend());
        QVERIFY(real.ready);
        QTRY_COMPARE_WITH_TIMEOUT(real.names(),
                                  QStringList({QStringLiteral("Attic"), QStringLiteral("Bedroom")}),
                                  PatienceMs);
        QTRY_COMPARE(real.model.library()->content().groupedFiles.isEmpty(), false);

        QVERIFY(first.setName(QStringLiteral("Cellar")));
        QVERIFY(first.announce({{QStringLiteral("serviceName"), QStringLiteral("Cellar")}}));
        QTRY_COMPARE_WITH_TIMEOUT(
            real.names(), QStringList({QStringLiteral("Bedroom"), QStringLiteral("Cellar")}),
            PatienceMs);
    }

    void aTvWithIPv6AloneIsListedAndReachedByItsHostName() {
        SimulatorProcess tv;
        QVERIFY2(startTv(tv, QStringLiteral("Six"),
                         {QStringLiteral("--ipv6-only"), QStringLiteral("--host-name"),
                          QStringLiteral("sixtv")}),
                 qPrintable(tv.errorText()));
        RealModel real(backend());
        QTRY_COMPARE_WITH_TIMEOUT(real.names(), QStringList(QStringLiteral("Six")), PatienceMs);
        QCOMPARE(real.model.selected()->device()->host, QStringLiteral("sixtv.local"));
        QTRY_VERIFY_WITH_TIMEOUT(!real.model.library()->content().groupedFiles.isEmpty(),
                                 PatienceMs);
    }

    void oddAndSilentTvsAreListedAsAnnouncedAndPortZeroIsNot() {
        const QString odd =
            QStringLiteral("Küche · TV\\2. \"Ünïcode\" <b>box</b> 📺 (living room…") +
            QStringLiteral("x)");
        QVERIFY(odd.toUtf8().size() <= 63);
        const QString longest = odd + QString(63 - odd.toUtf8().size(), u'z');
        SimulatorProcess oddTv;
        SimulatorProcess silentTv;
        SimulatorProcess portless;
        QVERIFY2(
            startTv(oddTv, QStringLiteral("unused"), {QStringLiteral("--service-name"), longest}),
            qPrintable(oddTv.errorText()));
        QVERIFY(
            oddTv.setFault(infoFault(QStringLiteral("status"), {{QStringLiteral("status"), 500}})));
        QVERIFY2(startTv(silentTv, QStringLiteral("Silent")), qPrintable(silentTv.errorText()));
        QVERIFY(silentTv.setFault(infoFault(QStringLiteral("hang"))));
        QVERIFY2(startTv(portless, QStringLiteral("Portless"),
                         {QStringLiteral("--announce-port"), QStringLiteral("0")}),
                 qPrintable(portless.errorText()));
        RealModel real(backend());
        QTRY_COMPARE_WITH_TIMEOUT(real.names(), QStringList({longest, QStringLiteral("Silent")}),
                                  PatienceMs);
        QCOMPARE(portless.requests().size(), 0);
    }
};

QTEST_GUILESS_MAIN(RealDiscoveryTest)
#include "real_discovery_test.moc"
