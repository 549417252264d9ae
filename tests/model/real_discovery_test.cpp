#include <QTest> // first: moc stumbles over standard headers that come before any of Qt's

#include "model/ombra_mac_model.h"
#include "platform/avahi/avahi_connection.h"
#include "platform/avahi/avahi_dns_sd.h"
#include "platform/avahi/avahi_test_daemon.h"
#include "platform/http/curl_http_session.h"
#include "simulator/simulator_process.h"
#include "support/fake_file_dialogs.h"
#include "support/fake_player.h"
#include "support/fake_still_extractor.h"
#include "support/memory_settings.h"

using namespace Qt::StringLiterals;
using namespace quiv;
using quiv::simulator::SimulatorProcess;

namespace {

constexpr int TimeoutMs = 20'000; // announcing alone takes seconds

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
    FakeLocalPorts local;
    OmbraMacModel model{{http, dnsSd, settings, clock, stills, log, dialogs.preferred, local.ports}};
    bool ready = false;
};

// Starts an announced TV whose announced name and own name are the same.
bool startTv(SimulatorProcess& tv, const QString& name, QStringList more = {}) {
    more += {u"--name"_s, name, u"--generate"_s, u"5"_s};
    return tv.start(more, SimulatorProcess::Announcing::Embedded);
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

    void aTvWithIPv6AloneIsListedAndReachedByItsHostName() {
        SimulatorProcess tv;
        QVERIFY2(startTv(tv, u"Six"_s, {u"--ipv6-only"_s, u"--host-name"_s, u"sixtv"_s}),
                 qPrintable(tv.errorText()));
        RealModel real(backend());
        QTRY_COMPARE_WITH_TIMEOUT(real.names(), QStringList(u"Six"_s), TimeoutMs);
        QCOMPARE(real.model.selected()->device()->host, u"sixtv.local"_s);
        QTRY_VERIFY_WITH_TIMEOUT(!real.model.library()->content().groupedFiles.isEmpty(),
                                 TimeoutMs);
    }
};

QTEST_GUILESS_MAIN(RealDiscoveryTest)
#include "real_discovery_test.moc"
