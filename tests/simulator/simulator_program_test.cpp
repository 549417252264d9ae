#include "simulator/tv_client.h"
#include "support/test_main.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QScopeGuard>

#include <thread>

using namespace quiv::simulator;

// How the program starts and ends, and what its control address does: faults and the log.
class SimulatorProgramTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void badOptionsAndATakenPortEndIt() {
        for (const char* arguments :
             {"--no-such-option", "something", "--port 65536", "--code 12x", "--generate many",
              "--announce-with shouting", "--lockout-seconds 0"})
            QCOMPARE(exitCodeWith(QString::fromLatin1(arguments).split(u' ')), 2);
        SimulatorProcess first;
        QVERIFY(first.start());
        QCOMPARE(exitCodeWith({u"--port"_s, QString::number(first.port())}), 1);
    }

    void killingItFreesItsPortForTheNext() {
        SimulatorProcess tv;
        QVERIFY(tv.start());
        TvClient client(tv);
        QCOMPARE(client.get("/api/info").status, 200);
        const quint16 port = tv.port();
        tv.kill();
        QCOMPARE(client.get("/api/info").status, 0);
        QVERIFY(tv.start({u"--port"_s, QString::number(port)}));
        QCOMPARE(client.get("/api/info").status, 200);
    }

    void stoppingDoesNotWaitForHangingRequests() {
        SimulatorProcess tv;
        QVERIFY(tv.start());
        TvClient idle(tv); // keeps its connection
        QCOMPARE(idle.get("/api/info").status, 200);
        QVERIFY(tv.setFault({{u"path"_s, u"*"_s}, {u"kind"_s, u"hang"_s}}));
        std::jthread hanging([&tv] { TvClient(tv).get("/api/files"); });
        QVERIFY(tv.waitForRequests(u"api/files"_s));
        QElapsedTimer elapsed;
        elapsed.start();
        tv.stop();
        QCOMPARE(tv.exitCode(), 0);
        QVERIFY(elapsed.elapsed() < 2000);
    }

    void samplesNeedAnEmptyFolderAndFfmpeg() {
        SimulatorProcess full;
        full.useSampleMedia();
        QFile file(full.mediaFolder() + u"/mine.mp4"_s);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(full.start());
        QCOMPARE(QDir(full.mediaFolder()).entryList(QDir::Files), QStringList(u"mine.mp4"_s));

        const QByteArray path = qgetenv("PATH");
        const auto restore = qScopeGuard([&] { qputenv("PATH", path); });
        qputenv("PATH", "/nowhere");
        SimulatorProcess empty;
        empty.useSampleMedia();
        QVERIFY(empty.start()); // goes on without them
        QVERIFY(QDir(empty.mediaFolder()).isEmpty());
    }

    void faultsStrikeTheRequestsTheyAreMeantFor() {
        SimulatorProcess tv;
        QVERIFY(tv.start());
        const auto fault = [&](const char* kind, QJsonObject parameters = {}) {
            parameters["kind"_L1] = QLatin1String(kind);
            parameters["path"_L1] = u"api/info"_s;
            return tv.setFault(parameters);
        };
        QVERIFY(!fault("no-such-kind"));
        QVERIFY(!fault("status"));
        QVERIFY(!fault("trickle", {{u"bytesPerSecond"_s, u"10"_s}}));
        QVERIFY(!tv.setFault({{u"kind"_s, u"hang"_s}}));

        QVERIFY(fault("status", {{u"status"_s, 500}, {u"skip"_s, 1}, {u"times"_s, 2}}));
        TvClient client(tv);
        QList<int> statuses;
        for (int request = 0; request < 4; ++request)
            statuses.append(client.get("/api/info").status);
        QCOMPARE(statuses, (QList<int>{200, 500, 500, 200}));

        QVERIFY(fault("one-auth-header", {{u"times"_s, 1}}));
        QVERIFY(fault("one-auth-header", {{u"header"_s, u"lifetime"_s}, {u"times"_s, 1}}));
        Reply reply = client.get("/api/info");
        QVERIFY(!reply.token.isEmpty() && reply.lifetime.isEmpty());
        reply = client.get("/api/info");
        QVERIFY(reply.token.isEmpty() && !reply.lifetime.isEmpty());

        QVERIFY(fault("delay", {{u"milliseconds"_s, 300}}));
        QElapsedTimer elapsed;
        elapsed.start();
        QCOMPARE(client.get("/api/info").status, 200);
        QVERIFY(elapsed.elapsed() >= 290);
    }

    void theLogTellsWhatWasAsked() {
        SimulatorProcess tv;
        QVERIFY(tv.start());
        TvClient(tv, "mac-7").put("/api/nothing?b=1%2B1+x&a=%C3%BC", "12345");
        const QJsonObject request = tv.requestsTo(u"api/nothing"_s).at(0).toObject();
        QCOMPARE(request["method"_L1].toString(), u"PUT"_s);
        QCOMPARE(request["status"_L1].toInt(), 404);
        QCOMPARE(request["bodyBytes"_L1].toInt(), 5);
        QCOMPARE(request["headers"_L1]["X-Quiv-Client-Id"_L1].toString(), u"mac-7"_s);
        const QJsonArray query = request["query"_L1].toArray();
        QCOMPARE(query.at(0)["name"_L1].toString(), u"b"_s);
        QCOMPARE(query.at(0)["value"_L1].toString(), u"1+1+x"_s);
        QCOMPARE(query.at(1)["value"_L1].toString(), u"ü"_s);
        tv.clearRequests();
        QVERIFY(tv.requestsTo(u"api/nothing"_s).isEmpty());
    }

    void theScreenTellsItAllAndIsNoRequest() {
        SimulatorProcess tv;
        QVERIFY(tv.start({u"--name"_s, u"Kitchen"_s, u"--generate"_s, u"1"_s}));
        const auto wanted = [&] {
            return tv.screen()["pairing"_L1]["wanted"_L1].toBool();
        };
        QCOMPARE(tv.screen()["name"_L1].toString(), u"Kitchen"_s);
        QCOMPARE(tv.screen()["pairing"_L1]["code"_L1].toString(), u"123"_s);
        QVERIFY(!wanted());
        TvClient client(tv);
        client.status();
        QVERIFY(wanted());
        client.pair();
        QVERIFY(!wanted());
        client.status(); // of one that is paired
        QVERIFY(!wanted());

        const QJsonValue video = client.get("/api/files").json["files"_L1][0]["name"_L1];
        const auto name = QUrl::toPercentEncoding(video.toString()).toStdString();
        QCOMPARE(client.post("/api/playback?command=play&name=" + name).status, 200);
        QCOMPARE(client.put("/api/files/upload?name=mine.srt", "12345").status, 200);
        const QJsonObject screen = tv.screen();
        QCOMPARE(screen["playback"_L1]["currentVideoName"_L1], video);
        QVERIFY(!screen["title"_L1].toString().isEmpty());
        QCOMPARE(screen["upload"_L1]["fileName"_L1].toString(), u"mine.srt"_s);
        QCOMPARE(screen["move"_L1]["state"_L1].toString(), u"IDLE"_s);
        QVERIFY(tv.requestsTo(u"screen"_s).isEmpty());
    }

private:
    int exitCodeWith(const QStringList& arguments) {
        SimulatorProcess tv;
        return tv.start(arguments) ? -1 : tv.exitCode();
    }
};

static const quiv::TestCase<SimulatorProgramTest> registered;
#include "simulator_program_test.moc"
