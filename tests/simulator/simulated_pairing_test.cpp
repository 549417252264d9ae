#include "simulator/tv_client.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace quiv::simulator;

namespace {

bool isAuthorized(const Reply& reply) {
    return reply.status == 200 && reply.json["authorized"_L1].toBool();
}

qint64 expiresInSec(const Reply& reply) {
    return reply.json["expiresInSec"_L1].toInteger(-1);
}

} // namespace

class TestSimulatedPairing : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void startsUnpairedAndTellsTheLifeOfTheCode();
    void theRightCodeHandsOutATokenForItsClientUntilCancelled();
    void aWrongCodeIsRefusedAndFiveOfThemLockOutForAWhile();
    void anExpiredCodeIsReplacedAndNoLongerWorks();
    void expiredTokensNoLongerAuthorize();
    void aTokenPastHalfOfItsLifeIsRenewed();
    void browsingMayNeedPairing();
};

void TestSimulatedPairing::startsUnpairedAndTellsTheLifeOfTheCode() {
    SimulatorProcess tv;
    QVERIFY2(tv.start({u"--code-lifetime"_s, u"120"_s}), qPrintable(tv.errorText()));
    const Reply reply = TvClient(tv).status();
    QCOMPARE(reply.status, 200);
    QVERIFY(!isAuthorized(reply));
    QVERIFY(reply.json["requiresPairing"_L1].toBool());
    QCOMPARE(reply.json["client"_L1].toString(), u"mac-1"_s);
    QCOMPARE(reply.json["clientLabel"_L1].toString(), u"Quiv Controller"_s);
    QVERIFY(expiresInSec(reply) > 60 && expiresInSec(reply) <= 120);
    QCOMPARE(reply.token, QString());
}

void TestSimulatedPairing::theRightCodeHandsOutATokenForItsClientUntilCancelled() {
    SimulatorProcess tv;
    QVERIFY(tv.start({u"--token-lifetime"_s, u"5000"_s}));
    TvClient client(tv);
    const Reply verified = client.verify("123");
    QCOMPARE(verified.status, 200);
    QVERIFY(!verified.token.isEmpty());
    QCOMPARE(verified.lifetime, u"5000"_s);

    client.token = verified.token;
    const Reply status = client.status();
    QVERIFY(isAuthorized(status));
    QVERIFY(expiresInSec(status) > 4900 && expiresInSec(status) <= 5000);
    QCOMPARE(status.token, QString());

    TvClient thief(tv, "mac-2");
    thief.token = verified.token;
    QVERIFY(!isAuthorized(thief.status()));
    QCOMPARE(client.post("/api/mac/auth/cancel").status, 200);
    QVERIFY(!isAuthorized(client.status()));
}

void TestSimulatedPairing::aWrongCodeIsRefusedAndFiveOfThemLockOutForAWhile() {
    SimulatorProcess tv;
    QVERIFY(tv.start({u"--lockout-seconds"_s, u"1"_s}));
    QCOMPARE(TvClient(tv, "").verify("123").status, 400); // who is this?
    TvClient client(tv);
    for (int attempt = 0; attempt < 5; ++attempt) {
        const Reply reply = client.verify("321");
        QCOMPARE(reply.status, 401);
        QCOMPARE(reply.token, QString());
        QVERIFY(reply.json["error"_L1].toString().startsWith("Wrong code."_L1));
    }
    QCOMPARE(client.verify("123").status, 429);
    QVERIFY(!isAuthorized(client.status()));
    QTRY_COMPARE_WITH_TIMEOUT(client.verify("123").status, 200, 5000);
}

void TestSimulatedPairing::anExpiredCodeIsReplacedAndNoLongerWorks() {
    SimulatorProcess tv;
    QVERIFY(tv.start({u"--code-lifetime"_s, u"1"_s}));
    QVERIFY(tv.setCode(QString()));
    const QString first = tv.pairingCode();
    QTRY_VERIFY_WITH_TIMEOUT(tv.pairingCode() != first, 5000);

    QVERIFY(tv.setCode(u"456"_s));
    TvClient client(tv);
    QCOMPARE(client.verify("123").status, 401);
    QCOMPARE(client.verify("456").status, 200);
    QVERIFY(!tv.setCode(u"45"_s));
}

void TestSimulatedPairing::expiredTokensNoLongerAuthorize() {
    SimulatorProcess tv;
    QVERIFY(tv.start());
    TvClient client(tv);
    client.pair();
    QVERIFY(tv.changePairing({{u"expireTokens"_s, true}}));
    QVERIFY(!isAuthorized(client.status()));

    QVERIFY(tv.changePairing({{u"tokenLifetime"_s, 1}}));
    client.pair();
    QVERIFY(isAuthorized(client.status()));
    QTRY_VERIFY_WITH_TIMEOUT(!isAuthorized(client.status()), 5000);
}

void TestSimulatedPairing::aTokenPastHalfOfItsLifeIsRenewed() {
    SimulatorProcess tv;
    QVERIFY(tv.start());
    TvClient client(tv);
    client.pair();
    QCOMPARE(client.get("/api/info").token, QString());
    // Against a life twice as long, all of the token's life is less than half.
    QVERIFY(tv.changePairing({{u"tokenLifetime"_s, 3 * 86400}}));
    const Reply renewed = client.get("/api/info");
    QVERIFY(!renewed.token.isEmpty());
    QVERIFY(renewed.token != client.token);
    QCOMPARE(renewed.lifetime, QString::number(3 * 86400));
    QVERIFY(isAuthorized(client.status()));
    client.token = renewed.token;
    QVERIFY(isAuthorized(client.status()));
    QCOMPARE(client.get("/api/info").token, QString());
}

void TestSimulatedPairing::browsingMayNeedPairing() {
    SimulatorProcess tv;
    QVERIFY(tv.start({u"--require-pairing-to-browse"_s}));
    TvClient client(tv);
    const Reply refused = client.get("/api/files");
    QCOMPARE(refused.status, 401);
    QCOMPARE(refused.json["error"_L1].toString(),
             u"Pairing required: enter the 3-digit code shown on TV."_s);
    QCOMPARE(client.get("/api/info").status, 200);
    client.pair();
    QCOMPARE(client.get("/api/files").status, 200);
}

QTEST_GUILESS_MAIN(TestSimulatedPairing)
#include "simulated_pairing_test.moc"
