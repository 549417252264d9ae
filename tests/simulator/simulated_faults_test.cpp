#include "simulator/raw_exchange.h"
#include "simulator/simulator_process.h"

#include <httplib.h>

#include <QElapsedTimer>
#include <QJsonDocument>
#include <QTest>

#include <memory>
#include <vector>

using namespace quiv::simulator;

static constexpr int patienceMs = 5000;

// Faults that are on the wire and not only in the list.
class TestSimulatedFaults : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    void aFaultWithoutSenseIsRefused();
    void statusAndBodyReplaceTheReply();
    void timesAndSkipChooseTheRequests();
    void theConnectionIsResetBeforeTheReplyOrWithinIt();
    void aDelayedReplyComesLater();
    void aTricklingReplyComesInPieces();
    void hangingRequestsDoNotHoldUpOthers();
    void brokenJsonDoesNotParse();
    void mistypedJsonParses();
    void oversizedJsonPassesAnyCap();
    void oneOfTheTokenHeadersComesAlone();
    void theLogTellsWhatWasAsked();
    void stoppingDoesNotWaitForHangingRequests();

private:
    bool fault(const char* kind, QJsonObject parameters = {});
    std::unique_ptr<RawExchange> ask(int silenceMs = patienceMs);
    int firedCount();

    SimulatorProcess m_tv;
};

void TestSimulatedFaults::initTestCase() {
    QVERIFY2(m_tv.start(), qPrintable(m_tv.errorText()));
}

void TestSimulatedFaults::cleanup() {
    m_tv.clearFaults();
    m_tv.clearRequests();
}

bool TestSimulatedFaults::fault(const char* kind, QJsonObject parameters) {
    parameters[QLatin1String("kind")] = QLatin1String(kind);
    parameters[QLatin1String("path")] = QStringLiteral("api/info");
    return m_tv.setFault(parameters);
}

std::unique_ptr<RawExchange> TestSimulatedFaults::ask(int silenceMs) {
    auto exchange = std::make_unique<RawExchange>(m_tv.port(), "api/info");
    exchange->read(silenceMs);
    return exchange;
}

int TestSimulatedFaults::firedCount() {
    return m_tv.faults().at(0)[QLatin1String("fired")].toInt();
}

void TestSimulatedFaults::aFaultWithoutSenseIsRefused() {
    QVERIFY(!fault("no-such-kind"));
    QVERIFY(!fault("status"));
    QVERIFY(!fault("trickle", {{QStringLiteral("bytesPerSecond"), QStringLiteral("10")}}));
    QVERIFY(!m_tv.setFault({{QStringLiteral("kind"), QStringLiteral("hang")}}));
    QCOMPARE(m_tv.faults().size(), 0);
}

void TestSimulatedFaults::statusAndBodyReplaceTheReply() {
    QVERIFY(fault("status", {{QStringLiteral("status"), 503}, {QStringLiteral("times"), 1}}));
    const auto unavailable = ask();
    QVERIFY(unavailable->received.startsWith("HTTP/1.1 503 "));
    QCOMPARE(unavailable->body(), QByteArray());

    QVERIFY(fault("body", {{QStringLiteral("body"), QStringLiteral("[]")},
                           {QStringLiteral("contentType"), QStringLiteral("text/html")}}));
    const auto other = ask();
    QVERIFY(other->received.startsWith("HTTP/1.1 200 "));
    QVERIFY(other->received.contains("Content-Type: text/html\r\n"));
    QCOMPARE(other->body(), QByteArray("[]"));
}

void TestSimulatedFaults::timesAndSkipChooseTheRequests() {
    QVERIFY(fault("status", {{QStringLiteral("status"), 500},
                             {QStringLiteral("skip"), 1},
                             {QStringLiteral("times"), 2}}));
    QByteArrayList statuses;
    for (int request = 0; request < 4; ++request)
        statuses.append(ask()->received.mid(9, 3));
    QCOMPARE(statuses, (QByteArrayList{"200", "500", "500", "200"}));
    QCOMPARE(firedCount(), 2);
}

void TestSimulatedFaults::theConnectionIsResetBeforeTheReplyOrWithinIt() {
    QVERIFY(fault("reset-before-reply"));
    const auto exchange = ask();
    QVERIFY(exchange->wasReset);
    QCOMPARE(exchange->received, QByteArray());
    QCOMPARE(m_tv.requestsTo(QStringLiteral("api/info")).at(0)[QLatin1String("status")].toInt(-1),
             0);
    m_tv.clearFaults();
    QVERIFY(fault("reset-after-bytes", {{QStringLiteral("bytes"), 25}}));
    const auto within = ask();
    QVERIFY(within->wasReset);
    QCOMPARE(within->body().size(), 25);
}

void TestSimulatedFaults::aDelayedReplyComesLater() {
    QVERIFY(fault("delay", {{QStringLiteral("milliseconds"), 300}}));
    const auto exchange = ask();
    QVERIFY(exchange->received.startsWith("HTTP/1.1 200 "));
    QVERIFY(exchange->longestPauseMs >= 290);
}

void TestSimulatedFaults::aTricklingReplyComesInPieces() {
    const QByteArray whole = ask()->body();
    QVERIFY(fault("trickle", {{QStringLiteral("bytesPerSecond"), 1000}}));
    QElapsedTimer elapsed;
    elapsed.start();
    const auto exchange = ask();
    QCOMPARE(exchange->body(), whole);
    QVERIFY(exchange->pieces >= 5);
    QVERIFY(elapsed.elapsed() >= whole.size() * 8 / 10);
}

void TestSimulatedFaults::hangingRequestsDoNotHoldUpOthers() {
    QVERIFY(fault("hang"));
    std::vector<std::unique_ptr<RawExchange>> hanging;
    for (int request = 0; request < 50; ++request)
        hanging.push_back(std::make_unique<RawExchange>(m_tv.port(), "api/info"));
    QVERIFY(m_tv.waitForRequests(QStringLiteral("api/info"), 50));
    RawExchange other(m_tv.port(), "api/files");
    other.read(patienceMs);
    QVERIFY(other.received.startsWith("HTTP/1.1 200 "));
    hanging.front()->read(100);
    QVERIFY(hanging.front()->peerWasSilent);
}

void TestSimulatedFaults::brokenJsonDoesNotParse() {
    QVERIFY(fault("broken-json"));
    const auto exchange = ask();
    QVERIFY(exchange->received.startsWith("HTTP/1.1 200 "));
    QVERIFY(!exchange->body().isEmpty());
    QVERIFY(QJsonDocument::fromJson(exchange->body()).isNull());
}

void TestSimulatedFaults::mistypedJsonParses() {
    const QJsonObject right = QJsonDocument::fromJson(ask()->body()).object();
    QVERIFY(fault("mistyped-json", {{QStringLiteral("field"), QStringLiteral("apiVersion")}}));
    QJsonObject wrong = QJsonDocument::fromJson(ask()->body()).object();
    QVERIFY(wrong[QLatin1String("apiVersion")].isString());
    wrong[QLatin1String("apiVersion")] = right[QLatin1String("apiVersion")];
    QCOMPARE(wrong, right);
}

void TestSimulatedFaults::oversizedJsonPassesAnyCap() {
    QVERIFY(fault("oversized-json"));
    QVERIFY(ask()->received.size() > (70 << 20));
}

void TestSimulatedFaults::oneOfTheTokenHeadersComesAlone() {
    QVERIFY(fault("one-auth-header", {{QStringLiteral("times"), 1}}));
    const QByteArray token = ask()->received;
    QVERIFY(token.contains("X-Quiv-Auth-Token: "));
    QVERIFY(!token.contains("X-Quiv-Auth-Expires-In: "));
    QVERIFY(fault("one-auth-header", {{QStringLiteral("header"), QStringLiteral("lifetime")}}));
    const QByteArray lifetime = ask()->received;
    QVERIFY(!lifetime.contains("X-Quiv-Auth-Token: "));
    QVERIFY(lifetime.contains("X-Quiv-Auth-Expires-In: "));
}

void TestSimulatedFaults::theLogTellsWhatWasAsked() {
    httplib::Client client("127.0.0.1", m_tv.port());
    client.Put("/api/nothing?b=1%2B1+x&a=%C3%BC", {{"X-Quiv-Client-Id", "mac-7"}}, "12345",
               "image/jpeg");
    const QJsonObject request = m_tv.requestsTo(QStringLiteral("api/nothing")).at(0).toObject();
    QCOMPARE(request[QLatin1String("method")].toString(), QStringLiteral("PUT"));
    QCOMPARE(request[QLatin1String("status")].toInt(), 404);
    QCOMPARE(request[QLatin1String("bodyBytes")].toInt(), 5);
    const QJsonObject headers = request[QLatin1String("headers")].toObject();
    QCOMPARE(headers[QLatin1String("X-Quiv-Client-Id")].toString(), QStringLiteral("mac-7"));
    QCOMPARE(headers[QLatin1String("Content-Type")].toString(), QStringLiteral("image/jpeg"));
    const QJsonArray query = request[QLatin1String("query")].toArray();
    QCOMPARE(query.at(0)[QLatin1String("name")].toString(), QStringLiteral("b"));
    QCOMPARE(query.at(0)[QLatin1String("value")].toString(), QStringLiteral("1+1+x"));
    QCOMPARE(query.at(1)[QLatin1String("value")].toString(), QStringLiteral("ü"));
    m_tv.clearRequests();
    QCOMPARE(m_tv.requests().size(), 0);
}

void TestSimulatedFaults::stoppingDoesNotWaitForHangingRequests() {
    SimulatorProcess tv;
    QVERIFY(tv.start());
    QVERIFY(tv.setFault({{QStringLiteral("path"), QStringLiteral("*")},
                         {QStringLiteral("kind"), QStringLiteral("hang")}}));
    RawExchange hanging(tv.port(), "api/info");
    RawExchange idle(tv.port(), "api/files");
    QVERIFY(tv.waitForRequests(QStringLiteral("api/files")));
    QElapsedTimer elapsed;
    elapsed.start();
    tv.stop();
    QCOMPARE(tv.exitCode(), 0);
    QVERIFY(elapsed.elapsed() < 2000);
}

QTEST_GUILESS_MAIN(TestSimulatedFaults)
#include "simulated_faults_test.moc"
