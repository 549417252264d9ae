#include <QTest> // first: moc stumbles over standard headers that come before any of Qt's

#include "platform/avahi/avahi_address_choice.h"
#include "platform/avahi/avahi_host_cache.h"
#include "platform/avahi/avahi_lookup.h"
#include "platform/avahi/avahi_lookups.h"
#include "platform/avahi/avahi_resolution.h"
#include "platform/avahi/avahi_seen_services.h"

using namespace Qt::StringLiterals;
using namespace quiv;
using namespace std::chrono_literals;

namespace {

const FoundService Kitchen{u"Kitchen"_s, u"_ombra._tcp"_s, u"local"_s};
constexpr AnnouncementPath Wired{2, 0};
constexpr AnnouncementPath Wireless{3, 1};

HostAddress parsed(const char* text, int interface) {
    AvahiAddress address;
    avahi_address_parse(text, AVAHI_PROTO_UNSPEC, &address);
    return fromAvahi(address, interface);
}

} // namespace

class AvahiValuesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aServiceIsNewOnItsFirstPathOnly();
    void aServiceIsNewAgainAfterItsLastPathWent();
    void addressesKeepFamilyBytesAndScope();
    void anIPv4AddressIsTakenAtOnce();
    void anIPv6AddressWaitsForIPv4();
    void aPlaceSettlesBeforeItCounts();
    void outerDotsAreDropped();
    void hostsAreRememberedForAMinute();
    void theMemoryForHostsIsBounded();
};

void AvahiValuesTest::aServiceIsNewOnItsFirstPathOnly() {
    AvahiSeenServices seen;
    QVERIFY(seen.appeared({Kitchen, Wired}));
    QVERIFY(!seen.appeared({Kitchen, Wireless}));
    QVERIFY(!seen.appeared({Kitchen, Wired}));
    for (std::size_t number = 1; number < AvahiSeenServices::maximumSize; ++number)
        QVERIFY(seen.appeared({{QString::number(number), {}, {}}, Wired}));
    QVERIFY(!seen.appeared({{QString::fromUtf8("one more"), {}, {}}, Wired}));
}

void AvahiValuesTest::aServiceIsNewAgainAfterItsLastPathWent() {
    AvahiSeenServices seen;
    seen.appeared({Kitchen, Wired});
    seen.appeared({Kitchen, Wireless});
    seen.gone({Kitchen, Wired});
    QVERIFY(!seen.appeared({Kitchen, Wired}));
    seen.gone({Kitchen, Wired});
    seen.gone({Kitchen, Wireless});
    QVERIFY(seen.appeared({Kitchen, Wireless}));
}

void AvahiValuesTest::addressesKeepFamilyBytesAndScope() {
    QCOMPARE(parsed("192.0.2.7", 2).toText(), u"192.0.2.7"_s);
    QCOMPARE(parsed("192.0.2.7", 2).family, HostAddress::Family::IPv4);
    QCOMPARE(parsed("fe80::7", 2).toText(), u"fe80::7"_s);
    QCOMPARE(parsed("fe80::7", 2).family, HostAddress::Family::IPv6);
    QCOMPARE(parsed("fe80::7", 2).scope, 2u);
    QCOMPARE(parsed("2001:db8::7", 2).scope, 0u);
}

void AvahiValuesTest::anIPv4AddressIsTakenAtOnce() {
    AvahiAddressChoice choice(Clock::Instant{} + 8s);
    QVERIFY(!choice.address());
    choice.add(parsed("192.0.2.7", 2), {});
    QVERIFY(choice.isFinal());
    QCOMPARE(choice.address(), parsed("192.0.2.7", 2));
}

void AvahiValuesTest::anIPv6AddressWaitsForIPv4() {
    AvahiAddressChoice choice(Clock::Instant{} + 8s);
    choice.add(parsed("2001:db8::7", 2), Clock::Instant{} + 1s);
    choice.add(parsed("2001:db8::8", 2), Clock::Instant{} + 2s);
    QVERIFY(!choice.isFinal());
    QVERIFY(choice.deadline() == Clock::Instant{} + 1700ms);
    QCOMPARE(choice.address(), parsed("2001:db8::7", 2));
    choice.add(parsed("192.0.2.7", 2), Clock::Instant{} + 2s);
    QVERIFY(choice.isFinal());
    QCOMPARE(choice.address(), parsed("192.0.2.7", 2));

    AvahiAddressChoice inAHurry(Clock::Instant{} + 1s);
    inAHurry.add(parsed("2001:db8::7", 2), Clock::Instant{} + 900ms);
    QVERIFY(inAHurry.deadline() == Clock::Instant{} + 1s);
}

void AvahiValuesTest::aPlaceSettlesBeforeItCounts() {
    const auto at = [](std::chrono::milliseconds time) {
        return Clock::Instant{} + time;
    };
    const AddressAppeared ipv6{parsed("2001:db8::7", 2), Wired};
    const AddressAppeared first{parsed("192.0.2.7", 2), Wired};
    const AddressAppeared second{parsed("192.0.2.8", 3), Wireless};
    AvahiResolution resolution(Kitchen.name, std::nullopt, at(8s));
    resolution.take(ServicePlace{u"tv.local"_s, 80}, at(0ms));
    resolution.take(ipv6, at(0ms));
    QVERIFY(!resolution.outcome(at(699ms)));
    QCOMPARE(resolution.outcome(at(700ms))->addresses, QList{ipv6.address});
    resolution.take(second, at(300ms));
    resolution.take(first, at(310ms));
    resolution.take(AddressAppeared{first.address, Wireless}, at(350ms));
    QVERIFY(!resolution.outcome(at(359ms)));
    const auto place = resolution.outcome(resolution.deadline());
    QCOMPARE(place->addresses, QList({first.address, second.address, ipv6.address}));

    AvahiResolution later(Kitchen.name, place, at(1h));
    later.take(ServicePlace{u"tv.local"_s, 80}, at(0ms));
    later.take(second, at(0ms)); // the others are on their way
    QVERIFY(!later.outcome(at(900ms)));
    later.take(first, at(900ms));
    later.take(ipv6, at(900ms));
    QVERIFY(later.deadline() == at(1h)); // nothing new
    later.take(AddressGone{first.address, Wired}, at(2s));
    QCOMPARE(later.outcome(at(3s))->addresses, QList({second.address, ipv6.address}));
}

void AvahiValuesTest::outerDotsAreDropped() {
    QCOMPARE(withoutOuterDots(u"_ombra._tcp."_s), QByteArray("_ombra._tcp"));
    QCOMPARE(withoutOuterDots(u"..local.."_s), QByteArray("local"));
    QCOMPARE(withoutOuterDots(u"..."_s), QByteArray());
}

void AvahiValuesTest::hostsAreRememberedForAMinute() {
    AvahiHostCache cache;
    const Clock::Instant start{};
    const HostAddress address = parsed("192.0.2.7", 2);
    cache.remember("tv.local", address, start);
    QCOMPARE(cache.find("tv.local", start + 59s), address);
    QVERIFY(!cache.find("tv.local", start + 60s));
    QVERIFY(!cache.find("other.local", start));
    cache.keep("tv.local", address); // where a service was found
    QCOMPARE(cache.find("tv.local", start + 24h), address);
    cache.forget("tv.local");
    QVERIFY(!cache.find("tv.local", start));
}

void AvahiValuesTest::theMemoryForHostsIsBounded() {
    AvahiHostCache cache;
    const Clock::Instant start{};
    for (int i = 0; i < 2000; ++i)
        cache.remember(QByteArray::number(i) + ".local", {}, start);
    QVERIFY(cache.size() <= AvahiHostCache::maximumSize);
    QVERIFY(cache.find("1999.local", start));
}

QTEST_GUILESS_MAIN(AvahiValuesTest)
#include "avahi_values_test.moc"
