#include "support/model_fixture.h"

#include <QTest>

using namespace quiv;
using namespace std::chrono_literals;

namespace {

const QString PersistedKey = QStringLiteral("ombra.selectedDeviceKey");

struct DiscoveryFixture : ModelFixture {
    DiscoveryFixture() { model.discovery()->refreshDiscovery(); }

    void find(const ResolvedService& service, const QByteArray& info = "{}") {
        browser.announce(service);
        clock.advance(0ms);
        http.answer(InfoPath, info);
    }
    QStringList names() {
        QStringList result;
        for (const TVEndpoint& device : model.discovery()->discoveredDevices())
            result.append(device.name);
        return result;
    }
};

const ResolvedService Bedroom = serviceAt(QStringLiteral("Bedroom"), {10, 0, 0, 1}, 80);
const ResolvedService Attic = serviceAt(QStringLiteral("attic"), {10, 0, 0, 2}, 80);

} // namespace

class DiscoveryTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void tvsAreProbedListedInOrderAndTheFirstIsSelected() {
        DiscoveryFixture fixture;
        QCOMPARE(fixture.browser.searches, QStringList(QStringLiteral("_ombra._tcp. local.")));
        fixture.find(Bedroom, R"({"name":" Big TV ","deviceModel":"KD-55"})");
        QCOMPARE(fixture.status(), QStringLiteral("Found 1 TV device(s)"));
        QCOMPARE(fixture.http.sent.last().timeouts.total, 1500ms);
        fixture.find(Attic, R"({"name":"  "})");
        QCOMPARE(fixture.names(), QStringList({QStringLiteral("attic"), QStringLiteral("Big TV")}));
        QCOMPARE(fixture.model.selected()->key(), QStringLiteral("10.0.0.1:80"));
        QCOMPARE(fixture.settings.texts.value(PersistedKey), QStringLiteral("10.0.0.1:80"));
        QCOMPARE(fixture.model.selected()->device()->deviceModel, QStringLiteral("KD-55"));
    }

    void aTvThatDoesNotAnswerTheProbeIsListedAsAnnounced() {
        DiscoveryFixture fixture;
        fixture.browser.announce(Bedroom);
        fixture.clock.advance(0ms);
        fixture.http.answer(InfoPath, HttpErrorCode::TimedOut);
        QCOMPARE(fixture.names(), QStringList(QStringLiteral("Bedroom")));
        fixture.find(Attic, R"({"apiVersion":"3","name":"never"})");
        QCOMPARE(fixture.names(),
                 QStringList({QStringLiteral("attic"), QStringLiteral("Bedroom")}));
    }

    void whatDoesNotResolveIsDroppedSilently() {
        DiscoveryFixture fixture;
        const QString status = fixture.status();
        fixture.browser.announce(Bedroom);
        fixture.browser.services.clear();
        fixture.clock.advance(8s);
        QVERIFY(fixture.names().isEmpty());
        QCOMPARE(fixture.status(), status);
    }

    void addressesArePreferredToHostNames() {
        HostAddress ipv6;
        ipv6.family = HostAddress::Family::IPv6;
        ResolvedService service = Bedroom;
        service.addresses.prepend(ipv6);
        QCOMPARE(endpointOf(service)->host, QStringLiteral("10.0.0.1"));
        service.addresses = {ipv6};
        service.hostName = QStringLiteral(".tv.local..");
        QCOMPARE(endpointOf(service)->host, QStringLiteral("tv.local"));
        service.hostName.reset();
        QVERIFY(!endpointOf(service));
        service = Bedroom;
        service.port = 0;
        QVERIFY(!endpointOf(service));
    }

    void thePersistedTvIsPreferredOnceFound() {
        DiscoveryFixture fixture;
        fixture.settings.texts[PersistedKey] = QStringLiteral(" 10.0.0.2:80 ");
        fixture.browser.services = {{Attic.name, Attic}, {Bedroom.name, Bedroom}};
        fixture.find(Attic);
        fixture.find(Bedroom);
        QCOMPARE(fixture.model.selected()->name(), QStringLiteral("attic"));
    }

    void aRefreshKeepsTheSelectionUntilAnotherTvIsFirst() {
        DiscoveryFixture fixture;
        fixture.find(Bedroom);
        fixture.model.discovery()->refreshDiscovery();
        QVERIFY(fixture.names().isEmpty());
        QCOMPARE(fixture.status(), QStringLiteral("Searching for TVs on local network..."));
        QCOMPARE(fixture.model.selected()->name(), QStringLiteral("Bedroom"));
        fixture.find(Bedroom, R"({"name":"Renamed"})"); // back first: taken over without a reset
        QCOMPARE(fixture.model.selected()->name(), QStringLiteral("Bedroom"));
        fixture.find(Bedroom, R"({"name":"Renamed"})");
        QCOMPARE(fixture.model.selected()->name(), QStringLiteral("Renamed"));

        fixture.model.discovery()->refreshDiscovery();
        fixture.find(Attic);
        QCOMPARE(fixture.model.selected()->name(), QStringLiteral("attic"));
        QCOMPARE(fixture.settings.texts.value(PersistedKey), QStringLiteral("10.0.0.2:80"));
    }

    void theListHasAStrictOrder() {
        const auto lowerHost =
            tvNamed(QStringLiteral("Living Room"), QStringLiteral(" A.local"), 9);
        const auto lowerPort = tvNamed(QStringLiteral("living room"), QStringLiteral("b.local"), 8);
        const auto last = tvNamed(QStringLiteral("LIVING ROOM"), QStringLiteral("B.local"), 9);
        const QList<TVEndpoint> order{lowerHost, lowerPort, last};
        for (int a = 0; a < 3; ++a) {
            for (int b = 0; b < 3; ++b)
                QCOMPARE(comesBefore(order[a], order[b]), a < b);
        }
        QVERIFY(endpointKey(lowerPort) != endpointKey(last));
    }

    void endingTheModelWhileTvsResolveAndAnswerIsHarmless() {
        auto fixture = std::make_unique<DiscoveryFixture>();
        fixture->browser.announce(Bedroom);
        fixture->clock.advance(0ms);
        fixture->browser.announce(Attic);
        QCOMPARE(fixture->http.waiting(), 1u);
        fixture.reset();
    }
};

QTEST_GUILESS_MAIN(DiscoveryTest)
#include "discovery_test.moc"
