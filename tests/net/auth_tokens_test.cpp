#include "net/auth_tokens.h"
#include "net/request_layer.h"
#include "net/token_order.h"
#include "support/fake_clock.h"
#include "support/memory_settings.h"
#include "support/test_main.h"

#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace quiv;
using namespace std::chrono_literals;

namespace {

const QUrl Tv(u"http://TV.local:8080/api/files"_s);

HttpReply replyWith(const QByteArray& token, const QByteArray& lifetime) {
    HttpReply reply;
    if (!token.isNull())
        reply.headers.append({"x-quiv-auth-token", token});
    if (!lifetime.isNull())
        reply.headers.append({"X-QUIV-Auth-Expires-In", lifetime});
    return reply;
}

} // namespace

class AuthTokensTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theClientIdIsMadeOnceAndKept() {
        MemorySettings settings;
        FakeClock clock;
        const QString id = AuthTokens(settings, clock).controlClientId();
        QVERIFY(QRegularExpression(u"^mac-[0-9a-f]{8}-([0-9a-f]{4}-){3}[0-9a-f]{12}$"_s)
                    .match(id)
                    .hasMatch());
        QCOMPARE(AuthTokens(settings, clock).controlClientId(), id);
        settings.texts[u"ombra.controlClientId.v1"_s] = u"  mine \n"_s;
        QCOMPARE(AuthTokens(settings, clock).controlClientId(), u"mine"_s);
    }

    void aTokenIsKnownUnderEveryUrlOfItsTv() {
        MemorySettings settings;
        FakeClock clock;
        AuthTokens tokens(settings, clock);
        QVERIFY(tokens.storeAuthToken({u" secret "_s, 300}, Tv));
        const QUrl sameTv(u"http://tv.LOCAL:8080"_s);
        QCOMPARE(tokens.storedAuthToken(sameTv), u"secret"_s);
        QVERIFY(!tokens.storedAuthToken(QUrl(u"http://tv.local:8081"_s)));
        QCOMPARE(settings.reals.value(u"ombra.authTokenExpiryMs.v1.tv.local:8080"_s),
                 double(clock.wallTime().time_since_epoch().count() + 300'000));

        HttpRequest request;
        tokens.applyControlHeaders(request, sameTv);
        QCOMPARE(request.headers.size(), 2);
        QCOMPARE(request.headers[1].second, QByteArray("secret"));
        QCOMPARE(tokens.authQueryItems(sameTv)[1].second, u"secret"_s);
        QCOMPARE(tokens.authQueryItems(QUrl(u"http://other"_s))[0].first, u"clientId"_s);
        QCOMPARE(tokenDeviceKey(QUrl(u"http://Other"_s)), u"other:80"_s);
        QCOMPARE(tokenDeviceKey(QUrl()), u"unknown:80"_s);
    }

    void repliesStoreReplaceOrRemoveTheToken_data() {
        QTest::addColumn<QByteArray>("token");
        QTest::addColumn<QByteArray>("lifetime");
        QTest::addColumn<QString>("stored");
        const QString old = u"old"_s;
        QTest::newRow("neither") << QByteArray() << QByteArray() << old;
        QTest::newRow("both") << QByteArray("new") << QByteArray(" +60 ") << u"new"_s;
        QTest::newRow("token only") << QByteArray("new") << QByteArray() << QString();
        QTest::newRow("lifetime only") << QByteArray() << QByteArray("60") << QString();
        QTest::newRow("zero") << QByteArray("new") << QByteArray("0") << QString();
        QTest::newRow("negative") << QByteArray("new") << QByteArray("-5") << QString();
        QTest::newRow("no number") << QByteArray("new") << QByteArray("soon") << QString();
        QTest::newRow("blank token") << QByteArray("  ") << QByteArray("60") << QString();
        QTest::newRow("huge") << QByteArray("new") << QByteArray("9223372036854775807") << u"new"_s;
        QTest::newRow("token that could not be sent")
            << QByteArray("a\tb") << QByteArray("60") << old;
        const QByteArray longest(4096, 't');
        QTest::newRow("longest") << longest << QByteArray("60") << QString::fromLatin1(longest);
        QTest::newRow("too long") << longest + 't' << QByteArray("60") << old;
    }
    void repliesStoreReplaceOrRemoveTheToken() {
        QFETCH(QByteArray, token);
        QFETCH(QByteArray, lifetime);
        QFETCH(QString, stored);
        MemorySettings settings;
        FakeClock clock;
        AuthTokens tokens(settings, clock);
        tokens.storeAuthToken({u"old"_s, 60}, Tv);
        if (const auto grant = authGrant(replyWith(token, lifetime)))
            tokens.storeAuthToken(*grant, Tv);
        QCOMPARE(tokens.storedAuthToken(Tv).value_or(QString()), stored);
        QCOMPARE(settings.reals.size(), stored.isEmpty() ? 0 : 1);
    }

    void ofManyTvsTheTokensOfThoseThatWereSelectedAreKept() {
        MemorySettings settings;
        FakeClock clock;
        AuthTokens tokens(settings, clock);
        const auto tv = [](int port) {
            return QUrl(u"http://10.0.0.1:%1/api/info"_s.arg(port));
        };
        const auto select = [&](int port) {
            settings.texts[u"ombra.selectedDeviceKey"_s] = u"10.0.0.1:%1"_s.arg(port);
            tokens.storeAuthToken({u"of a selected one"_s, 60}, tv(port));
        };
        select(1);
        select(2);
        for (int port = 100; port < 1000; ++port)
            tokens.storeAuthToken({QString(4096, u't'), 60}, tv(port));
        QCOMPARE(settings.reals.size(), AuthTokens::MostTokens);
        QVERIFY(tokens.storedAuthToken(tv(1)) && tokens.storedAuthToken(tv(2)));
        QVERIFY(tokens.storedAuthToken(tv(999)) && !tokens.storedAuthToken(tv(900)));
        for (int port = 1000; port < 1100; ++port)
            select(port);
        settings.texts[u"ombra.selectedDeviceKey"_s] = u"10.0.0.1:1036"_s; // the oldest
        tokens.storeAuthToken({u"another"_s, 60}, tv(7));
        tokens.removeAuthToken(tv(1099));
        QCOMPARE(settings.reals.size(), AuthTokens::MostTokens - 1);
        QVERIFY(tokens.storedAuthToken(tv(1036)) && !tokens.storedAuthToken(tv(7)));
        QCOMPARE(tokenOrder(u"a:1 b:2|c:3"_s), (TokenOrder{{u"a:1"_s, u"b:2"_s}, {u"c:3"_s}}));
        QCOMPARE(tokenOrder(u"no order | of | mine"_s).given.size(), 2);
    }

    void aTokenExpiresSoonWithinAMinute() {
        MemorySettings settings;
        FakeClock clock;
        AuthTokens tokens(settings, clock);
        QVERIFY(!tokens.authTokenExpiresSoon(Tv));
        tokens.storeAuthToken({u"token"_s, 100}, Tv);
        const auto reals = settings.reals;
        clock.advance(29'999ms);
        tokens.storeAuthToken({u"token"_s, 100}, Tv);
        QCOMPARE(settings.reals, reals); // not worth a write
        clock.advance(10s);
        QVERIFY(!tokens.authTokenExpiresSoon(Tv));
        clock.advance(1ms);
        QVERIFY(tokens.authTokenExpiresSoon(Tv));
        clock.advance(1h);
        QVERIFY(tokens.authTokenExpiresSoon(Tv));
        for (const double broken : {std::nan(""), 1e300, -1.0, 0.5}) {
            settings.reals[u"ombra.authTokenExpiryMs.v1.tv.local:8080"_s] = broken;
            QVERIFY(!tokens.authTokenExpiresSoon(Tv));
        }
    }

    void failedRepliesHaveAMessage_data() {
        QTest::addColumn<int>("status");
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<QString>("message");
        const auto row = [](int status, const char* body, const char* message) {
            QTest::addRow("%d %s", status, body)
                << status << QByteArray(body) << QString::fromUtf8(message);
        };
        row(400, R"({"ok":false,"error":"  No such file. "})", "No such file.");
        row(400, R"({"error":"  "})", R"({"error":"  "})");
        row(400, R"({"error":7})", R"({"error":7})");
        row(500, " Internal \n", "Internal");
        row(403, "", "Upload failed (HTTP 403).");
        row(401, " ", "Pairing required: enter the 3-digit code shown on TV.");
        row(507, "\xff\xfe", "Upload failed: not enough free space on target storage.");
        row(504, "", "Upload failed: transfer timed out before completion.");
        row(413, "", "Upload failed: file is too large for the current upload target.");
        row(429, "", "Too many auth attempts. Wait before trying again.");
    }
    void failedRepliesHaveAMessage() {
        QFETCH(int, status);
        QFETCH(QByteArray, body);
        QTEST(serverErrorMessage(status, body), "message");
    }

    void addressesAndQueriesReachTheTvAsTheyAre() {
        const auto url = [](const char* host, int port) {
            TVEndpoint endpoint;
            endpoint.host = QString::fromUtf8(host);
            endpoint.port = port;
            return baseURL(endpoint);
        };
        QVERIFY(url("192.168.1.20", 8080) && url("tv.local", 1));
        for (const char* host : {"", "my tv", "a/b", "u@h", "a?b", "a#b", "::1"})
            QVERIFY2(!url(host, 80), host);
        QVERIFY(!url("tv.local", 70000));
        const auto request = tvRequest("POST", *url("tv.local", 80), u"api/files/delete"_s,
                                       {{u"name"_s, u"a+b &c=é.mkv"_s}});
        QCOMPARE(request.url,
                 QByteArray("http://tv.local:80/api/files/delete?name=a%2Bb%20%26c%3D%C3%A9.mkv"));
    }
};

static const quiv::TestCase<AuthTokensTest> registered;
#include "auth_tokens_test.moc"
