#include "simulator/tv_client.h"
#include "support/test_main.h"

using namespace quiv::simulator;

namespace {

bool isAuthorized(const Reply& reply) {
    return reply.status == 200 && reply.json["authorized"_L1].toBool();
}

} // namespace

class SimulatedPairingTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        QVERIFY(m_tv.start({u"--lockout-seconds"_s, u"1"_s, u"--code-lifetime"_s, u"120"_s,
                            u"--require-pairing-to-browse"_s}));
        m_client = std::make_unique<TvClient>(m_tv);
    }
    void cleanup() { m_tv.stop(); }

    void theRightCodeHandsOutATokenForItsClientUntilCancelled() {
        Reply reply = m_client->status();
        QVERIFY(!isAuthorized(reply));
        QVERIFY(reply.json["requiresPairing"_L1].toBool());
        const qint64 lifeOfCode = reply.json["expiresInSec"_L1].toInteger();
        QVERIFY(lifeOfCode > 60 && lifeOfCode <= 120);
        QCOMPARE(m_client->get("/api/info").status, 200);
        QCOMPARE(m_client->get("/api/files").status, 401);

        reply = m_client->verify("123");
        QCOMPARE(reply.lifetime, u"86400"_s);
        TvClient thief(m_tv, "mac-2");
        thief.token = m_client->token = reply.token;
        QVERIFY(!isAuthorized(thief.status()));
        reply = m_client->status();
        QVERIFY(isAuthorized(reply));
        QVERIFY(reply.json["expiresInSec"_L1].toInteger() > 86'000);
        QCOMPARE(m_client->get("/api/files").status, 200);
        QCOMPARE(m_client->post("/api/mac/auth/cancel").status, 200);
        QVERIFY(!isAuthorized(m_client->status()));
    }

    void fiveWrongCodesLockOutForAWhile() {
        QCOMPARE(TvClient(m_tv, "").verify("123").status, 400); // who is this?
        for (int attempt = 0; attempt < 5; ++attempt) {
            const Reply reply = m_client->verify("321");
            QCOMPARE(reply.status, 401);
            QCOMPARE(reply.token, QString());
        }
        QCOMPARE(m_client->verify("123").status, 429);
        QTRY_COMPARE(m_client->verify("123").status, 200);
    }

    void anotherCodeReplacesTheFirst() {
        QVERIFY(m_tv.change(u"pairing"_s, {{u"code"_s, QString()}}));
        const QString random = m_tv.pairingCode();
        QVERIFY(m_tv.change(u"pairing"_s, {{u"expireCode"_s, true}}));
        QTRY_VERIFY(m_tv.pairingCode() != random);
        QVERIFY(!m_tv.change(u"pairing"_s, {{u"code"_s, u"45"_s}}));
        QVERIFY(m_tv.change(u"pairing"_s, {{u"code"_s, u"456"_s}}));
        QCOMPARE(m_client->verify("123").status, 401);
        QCOMPARE(m_client->verify("456").status, 200);
    }

    void tokensAreRenewedAndExpire() {
        m_client->pair();
        QCOMPARE(m_client->get("/api/info").token, QString());
        // Against a life twice as long, all of the token's life is less than half.
        QVERIFY(m_tv.change(u"pairing"_s, {{u"tokenLifetime"_s, 3 * 86400}}));
        const Reply renewed = m_client->get("/api/info");
        QVERIFY(!renewed.token.isEmpty() && renewed.token != m_client->token);
        QCOMPARE(renewed.lifetime, QString::number(3 * 86400));
        QVERIFY(isAuthorized(m_client->status())); // with the old one
        m_client->token = renewed.token;
        QVERIFY(isAuthorized(m_client->status()));
        QCOMPARE(m_client->get("/api/info").token, QString());
        QVERIFY(m_tv.change(u"pairing"_s, {{u"expireTokens"_s, true}}));
        QVERIFY(!isAuthorized(m_client->status()));

        QVERIFY(m_tv.change(u"pairing"_s, {{u"tokenLifetime"_s, 1}}));
        m_client->pair();
        QVERIFY(isAuthorized(m_client->status()));
        QTRY_VERIFY(!isAuthorized(m_client->status()));
    }

private:
    SimulatorProcess m_tv;
    std::unique_ptr<TvClient> m_client;
};

static const quiv::TestCase<SimulatedPairingTest> registered;
#include "simulated_pairing_test.moc"
