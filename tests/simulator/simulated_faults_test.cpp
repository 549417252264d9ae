#include "simulator/raw_exchange.h"
#include "simulator/simulator_process.h"

#include <httplib.h>

#include <QElapsedTimer>
#include <QJsonDocument>
#include <QTest>

#include <memory>
#include <vector>

using namespace Qt::StringLiterals;
using namespace quiv::simulator;

namespace {

constexpr int TimeoutMs = 5000;

} // namespace

// Faults that are on the wire and not only in the list.
class TestSimulatedFaults : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    void aFaultWithoutSenseIsRefused();
    void timesAndSkipChooseTheRequests();
    void aDelayedReplyComesLater();
    void oneOfTheTokenHeadersComesAlone();
    void theLogTellsWhatWasAsked();
    void stoppingDoesNotWaitForHangingRequests();

private:
    bool fault(const char* kind, QJsonObject parameters = {});
    std::unique_ptr<RawExchange> ask(int silenceMs = TimeoutMs);
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
    parameters["kind"_L1] = QLatin1String(kind);
    parameters["path"_L1] = u"api/info"_s;
    return m_tv.setFault(parameters);
}

std::unique_ptr<RawExchange> TestSimulatedFaults::ask(int silenceMs) {
    auto exchange = std::make_unique<RawExchange>(m_tv.port(), "api/info");
    exchange->read(silenceMs);
    return exchange;
}

int TestSimulatedFaults::firedCount() {
    return m_tv.faults().at(0)["fired"_L1].toInt();
}

void TestSimulatedFaults::aFaultWithoutSenseIsRefused() {
    QVERIFY(!fault("no-such-kind"));
    QVERIFY(!fault("status"));
    QVERIFY(!fault("trickle", {{u"bytesPerSecond"_s, u"10"_s}}));
    QVERIFY(!m_tv.setFault({{u"kind"_s, u"hang"_s}}));
    QCOMPARE(m_tv.faults().size(), 0);
}

void TestSimulatedFaults::timesAndSkipChooseTheRequests() {
    QVERIFY(fault("status", {{u"status"_s, 500}, {u"skip"_s, 1}, {u"times"_s, 2}}));
    QByteArrayList statuses;
    for (int request = 0; request < 4; ++request)
        statuses.append(ask()->received.mid(9, 3));
    QCOMPARE(statuses, (QByteArrayList{"200", "500", "500", "200"}));
    QCOMPARE(firedCount(), 2);
}

void TestSimulatedFaults::aDelayedReplyComesLater() {
    QVERIFY(fault("delay", {{u"milliseconds"_s, 300}}));
    const auto exchange = ask();
    QVERIFY(exchange->received.startsWith("HTTP/1.1 200 "));
    QVERIFY(exchange->longestPauseMs >= 290);
}

void TestSimulatedFaults::oneOfTheTokenHeadersComesAlone() {
    QVERIFY(fault("one-auth-header", {{u"times"_s, 1}}));
    const QByteArray token = ask()->received;
    QVERIFY(token.contains("X-Quiv-Auth-Token: "));
    QVERIFY(!token.contains("X-Quiv-Auth-Expires-In: "));
    QVERIFY(fault("one-auth-header", {{u"header"_s, u"lifetime"_s}}));
    const QByteArray lifetime = ask()->received;
    QVERIFY(!lifetime.contains("X-Quiv-Auth-Token: "));
    QVERIFY(lifetime.contains("X-Quiv-Auth-Expires-In: "));
}

void TestSimulatedFaults::theLogTellsWhatWasAsked() {
    httplib::Client client("127.0.0.1", m_tv.port());
    client.Put("/api/nothing?b=1%2B1+x&a=%C3%BC", {{"X-Quiv-Client-Id", "mac-7"}}, "12345",
               "image/jpeg");
    const QJsonObject request = m_tv.requestsTo(u"api/nothing"_s).at(0).toObject();
    QCOMPARE(request["method"_L1].toString(), u"PUT"_s);
    QCOMPARE(request["status"_L1].toInt(), 404);
    QCOMPARE(request["bodyBytes"_L1].toInt(), 5);
    const QJsonObject headers = request["headers"_L1].toObject();
    QCOMPARE(headers["X-Quiv-Client-Id"_L1].toString(), u"mac-7"_s);
    QCOMPARE(headers["Content-Type"_L1].toString(), u"image/jpeg"_s);
    const QJsonArray query = request["query"_L1].toArray();
    QCOMPARE(query.at(0)["name"_L1].toString(), u"b"_s);
    QCOMPARE(query.at(0)["value"_L1].toString(), u"1+1+x"_s);
    QCOMPARE(query.at(1)["value"_L1].toString(), u"ü"_s);
    m_tv.clearRequests();
    QCOMPARE(m_tv.requests().size(), 0);
}

void TestSimulatedFaults::stoppingDoesNotWaitForHangingRequests() {
    SimulatorProcess tv;
    QVERIFY(tv.start());
    QVERIFY(tv.setFault({{u"path"_s, u"*"_s}, {u"kind"_s, u"hang"_s}}));
    RawExchange hanging(tv.port(), "api/info");
    RawExchange idle(tv.port(), "api/files");
    QVERIFY(tv.waitForRequests(u"api/files"_s));
    QElapsedTimer elapsed;
    elapsed.start();
    tv.stop();
    QCOMPARE(tv.exitCode(), 0);
    QVERIFY(elapsed.elapsed() < 2000);
}

QTEST_GUILESS_MAIN(TestSimulatedFaults)
#include "simulated_faults_test.moc"
