#include "support/model_fixture.h"
#include "support/test_main.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace quiv;
using namespace std::chrono_literals;

namespace {

const QString PersistedKey = u"ombra.selectedDeviceKey"_s;

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

const ResolvedService Bedroom = serviceAt(u"Bedroom"_s, {10, 0, 0, 1}, 80);
const ResolvedService Attic = serviceAt(u"attic"_s, {10, 0, 0, 2}, 80);

} // namespace

class DiscoveryTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void tvsAreProbedListedInOrderAndTheFirstIsSelected() {
        DiscoveryFixture fixture;
        QCOMPARE(fixture.browser.searches, QStringList(u"_ombra._tcp. local."_s));
        fixture.find(Bedroom, R"({"name":" Big TV ","deviceModel":"KD-55"})");
        QCOMPARE(fixture.status(), u"Found 1 TV device(s)"_s);
        QCOMPARE(fixture.http.sent.last().timeouts.total, 1500ms);
        fixture.find(Attic, R"({"name":"  "})");
        QCOMPARE(fixture.names(), QStringList({u"attic"_s, u"Big TV"_s}));
        QCOMPARE(fixture.model.selected()->key(), u"10.0.0.1:80"_s);
        QCOMPARE(fixture.settings.texts.value(PersistedKey), u"10.0.0.1:80"_s);
        QCOMPARE(fixture.settings.texts.value(u"ombra.selectedServiceName"_s), Bedroom.name);
        QCOMPARE(fixture.model.selected()->device()->deviceModel, u"KD-55"_s);
    }

    void aTvThatDoesNotAnswerTheProbeIsListedAsAnnounced() {
        DiscoveryFixture fixture;
        fixture.browser.announce(Bedroom);
        fixture.clock.advance(0ms);
        fixture.http.answer(InfoPath, HttpErrorCode::TimedOut);
        QCOMPARE(fixture.names(), QStringList(u"Bedroom"_s));
        fixture.find(Attic, R"({"apiVersion":"3","name":"never"})");
        QCOMPARE(fixture.names(), QStringList({u"attic"_s, u"Bedroom"_s}));
    }

    void aTvThatDoesNotResolveIsListedOnceItDoes() {
        DiscoveryFixture fixture;
        const QString status = fixture.status();
        fixture.browser.announceName(Bedroom.name);
        fixture.clock.advance(10min);
        QVERIFY(fixture.names().isEmpty());
        QCOMPARE(fixture.status(), status);
        fixture.browser.move(Bedroom);
        fixture.clock.advance(0ms);
        QVERIFY(fixture.http.answer(InfoPath, "{}"));
        QCOMPARE(fixture.names(), QStringList(Bedroom.name));

        fixture.browser.announceName(Attic.name);
        fixture.browser.withdraw(Attic.name);
        fixture.browser.move(Attic);
        fixture.clock.advance(0ms);
        QCOMPARE(fixture.http.waiting(), 0u);
    }

    void aTvThatMovesTakesItsEntryAlong() {
        DiscoveryFixture fixture;
        fixture.find(Bedroom, R"({"name":"Big TV"})");
        fixture.browser.move(serviceAt(Bedroom.name, {10, 0, 0, 9}, 81));
        fixture.clock.advance(0ms);
        QVERIFY(fixture.http.answer(InfoPath, HttpErrorCode::TimedOut));
        QCOMPARE(fixture.names(), QStringList(u"Big TV"_s)); // what is known of it stays
        QCOMPARE(fixture.model.selected()->key(), u"10.0.0.9:81"_s);
        QCOMPARE(fixture.settings.texts.value(PersistedKey), u"10.0.0.9:81"_s);

        fixture.browser.withdraw(Bedroom.name);
        QCOMPARE(fixture.names().size(), 1);
        fixture.find(Bedroom, R"({"name":"Back"})");
        QCOMPARE(fixture.names(), QStringList(u"Back"_s));
        QCOMPARE(fixture.model.selected()->key(), u"10.0.0.1:80"_s);
    }

    void ofSeveralAddressesTheLastUsedIsTakenWhileItAnswers() {
        DiscoveryFixture fixture;
        fixture.settings.texts[PersistedKey] = u"10.0.0.9:80"_s;
        ResolvedService service = Bedroom;
        service.addresses += serviceAt(Bedroom.name, {10, 0, 0, 9}, 80).addresses;
        fixture.find(service);
        QCOMPARE(fixture.model.selected()->key(), u"10.0.0.9:80"_s);

        fixture.model.discovery()->resolveAnew(u"10.0.0.1:80"_s); // not listed
        fixture.clock.advance(0ms);
        QCOMPARE(fixture.http.waiting(), 0u);
        fixture.model.discovery()->resolveAnew(u"10.0.0.9:80"_s);
        fixture.clock.advance(0ms);
        fixture.http.answer(InfoPath, "{}");
        QCOMPARE(fixture.model.selected()->key(), u"10.0.0.1:80"_s);
        QCOMPARE(fixture.names().size(), 1);

        fixture.browser.move(Bedroom); // its only address is not avoided
        fixture.model.discovery()->resolveAnew(u"10.0.0.1:80"_s);
        fixture.clock.advance(0ms);
        QVERIFY(fixture.http.latest(InfoPath).url.startsWith("http://10.0.0.1:80/"));
    }

    void addressesArePreferredToHostNames() {
        HostAddress ipv6;
        ipv6.family = HostAddress::Family::IPv6;
        ResolvedService service = Bedroom;
        service.addresses.prepend(ipv6);
        QCOMPARE(endpointOf(service)->host, u"10.0.0.1"_s);
        service.addresses = {ipv6};
        service.hostName = u".tv.local.."_s;
        QCOMPARE(endpointOf(service)->host, u"tv.local"_s);
        service.hostName = u"slow.example.org"_s; // only the network's own names are looked up
        QVERIFY(!endpointOf(service));
        service.hostName.reset();
        QVERIFY(!endpointOf(service));
        service = Bedroom;
        service.port = 0;
        QVERIFY(!endpointOf(service));
    }

    void thePersistedTvIsPreferredOnceFound() {
        DiscoveryFixture fixture;
        fixture.settings.texts[PersistedKey] = u" 10.0.0.2:80 "_s;
        fixture.find(Bedroom);
        QVERIFY(!fixture.model.selected()->isSelected());
        fixture.find(Attic);
        QCOMPARE(fixture.model.selected()->name(), u"attic"_s);
    }

    void ofAFloodOfTvsAFewAreFollowedAndAmongThemTheRememberedOne() {
        DiscoveryFixture fixture;
        fixture.settings.texts[PersistedKey] = u"10.0.0.1:80"_s;
        fixture.settings.texts[u"ombra.selectedServiceName"_s] = Bedroom.name;
        const auto announce = [&fixture](int number) {
            const QString name = u"TV %1"_s.arg(number);
            const auto high = static_cast<std::uint8_t>(number / 256);
            const auto low = static_cast<std::uint8_t>(number % 256);
            fixture.browser.services.insert(name, serviceAt(name, {10, 1, high, low}, 80));
            fixture.browser.announceName(name);
        };
        const auto answerProbes = [&fixture] {
            fixture.clock.advance(0ms);
            for (ModelFixture::turn(); fixture.http.waiting() > 0; ModelFixture::turn()) {
                QVERIFY(fixture.http.waiting() <= Discovery::ProbesAtOnce);
                fixture.http.answer(InfoPath, "{}");
            }
        };
        for (int number = 0; number < 4000; ++number)
            announce(number);
        fixture.browser.announce(Bedroom);
        fixture.clock.advance(0ms);
        QVERIFY(fixture.http.waitingUrls().contains(QUrl(u"http://10.0.0.1:80/api/info"_s)));
        answerProbes();
        const auto& devices = fixture.model.discovery()->discoveredDevices();
        QCOMPARE(std::size_t(devices.size()), Discovery::MostFollowed);
        QVERIFY(std::ranges::is_sorted(devices, comesBefore));
        QCOMPARE(fixture.model.selected()->name(), Bedroom.name);
        fixture.clock.advance(1min);
        QCOMPARE(fixture.log.lines.size(), 1);
        QVERIFY2(fixture.log.lines[0].contains(u"3745"_s), qPrintable(fixture.log.lines[0]));

        fixture.browser.withdraw(u"TV 7"_s); // makes room
        announce(5000);
        answerProbes();
        QVERIFY(fixture.names().contains(u"TV 5000"_s) && !fixture.names().contains(u"TV 7"_s));
        QCOMPARE(std::size_t(devices.size()), Discovery::MostFollowed);
    }

    void aRefreshKeepsTheSelectionForAWhile() {
        DiscoveryFixture fixture;
        fixture.find(Bedroom);
        fixture.model.discovery()->refreshDiscovery();
        QVERIFY(fixture.names().isEmpty());
        QCOMPARE(fixture.status(), u"Searching for TVs on local network..."_s);
        QCOMPARE(fixture.model.selected()->name(), u"Bedroom"_s);
        fixture.find(Bedroom, R"({"name":"Renamed"})"); // back first: taken over without a reset
        QCOMPARE(fixture.model.selected()->name(), u"Renamed"_s);
        fixture.find(Bedroom, "no JSON"); // what is known of it stays
        QCOMPARE(fixture.names(), QStringList(u"Renamed"_s));

        fixture.model.discovery()->refreshDiscovery();
        fixture.find(Attic);
        QCOMPARE(fixture.model.selected()->name(), u"Renamed"_s); // it may still come back
        fixture.clock.advance(1500ms);
        QCOMPARE(fixture.model.selected()->name(), u"attic"_s);
        QVERIFY(fixture.model.state().isSearching); // something came just now
        fixture.clock.advance(1600ms);
        QVERIFY(!fixture.model.state().isSearching);
        QCOMPARE(fixture.settings.texts.value(PersistedKey), u"10.0.0.2:80"_s);
    }

    void whatStandsInTheWayOfASearchIsTold() {
        const NetworkInterface loopback{
            .name = u"lo"_s, .isLoopback = true, .isUp = true, .hasIpv4 = true};
        NetworkInterface ethernet{.name = u"eth0"_s};
        const auto title = [&](bool canSearch = true) {
            return networkProblem({loopback, ethernet}, canSearch).title;
        };
        const QString unconnected = u"This computer is not connected to a network"_s;
        QCOMPARE(title(), unconnected);
        ethernet.isUp = true;
        QVERIFY(networkProblem({loopback, ethernet}, true).advice.contains(u"off for eth0,"_s));
        ethernet.canMulticast = true;
        QCOMPARE(title(), u"This computer has no address in its network"_s);
        ethernet.hasIpv6 = true;
        QCOMPARE(title(), QString());
        QCOMPARE(title(false), u"TVs cannot be searched for"_s);
        ethernet.isPointToPoint = true;
        QCOMPARE(title(), unconnected);

        DiscoveryFixture fixture;
        fixture.clock.advance(10s);
        fixture.model.discovery()->setNetworkProblem(networkProblem({loopback}, true));
        QCOMPARE(fixture.model.state().networkProblem.title, unconnected);
        QVERIFY(!fixture.model.state().isSearching);
        fixture.model.discovery()->setNetworkProblem({});
        QVERIFY(fixture.model.state().isSearching); // TVs may come now
        fixture.clock.advance(3s);
        QVERIFY(!fixture.model.state().isSearching);
    }

    void theListHasAStrictOrder() {
        const auto lowerHost = tvNamed(u"Living Room"_s, u" A.local"_s, 9);
        const auto lowerPort = tvNamed(u"living room"_s, u"b.local"_s, 8);
        const auto last = tvNamed(u"LIVING ROOM"_s, u"B.local"_s, 9);
        const QList<TVEndpoint> order{lowerHost, lowerPort, last};
        for (int a = 0; a < 3; ++a) {
            for (int b = 0; b < 3; ++b)
                QCOMPARE(comesBefore(order[a], order[b]), a < b);
        }
        // U+FF21 comes before U+1F4FA, though not in UTF-16.
        QVERIFY(comesBefore(tvNamed(u"\uff21"_s, u"b"_s), tvNamed(u"\U0001f4fa"_s, u"a"_s)));
        QVERIFY(!comesBefore(tvNamed(u"\U0001f4fa"_s, u"a"_s), tvNamed(u"\uff21"_s, u"b"_s)));
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

static const quiv::TestCase<DiscoveryTest> registered;
#include "discovery_test.moc"
