#include "simulator/raw_exchange.h"
#include "simulator/tv_client.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTest>

#include <thread>

using namespace Qt::StringLiterals;
using namespace quiv::simulator;

namespace {

const QByteArray MovieParameter = "Generated%20Movie%20000000.mp4";

QStringList filesIn(const QString& folder) {
    return QDir(folder).entryList(QDir::Files | QDir::Hidden);
}

QStringList labels(const QJsonValue& tracks) {
    QStringList labels;
    const QJsonArray array = tracks.toArray();
    for (const QJsonValue& track : array)
        labels.append(track["label"_L1].toString());
    return labels;
}

} // namespace

// What a paired client does with the TV's files: plays, moves, deletes, brings and fetches them.
class TestSimulatedMedia : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        m_tv.useSampleMedia();
        QVERIFY2(m_tv.start({u"--generate"_s, u"2"_s, u"--move-seconds"_s, u"3600"_s, u"--usb"_s,
                             m_usb.path()}),
                 qPrintable(m_tv.errorText()));
        m_client = std::make_unique<TvClient>(m_tv);
        m_client->pair();
    }
    void cleanup() { m_tv.clearFaults(); }

    void strangersAndSenselessRequestsAreRefused() {
        TvClient stranger(m_tv);
        for (const char* path : {"/api/playback?command=stop", "/api/files/move?name=x&target=usb",
                                 "/api/files/delete?name=Test%20Card.mp4"})
            QCOMPARE(stranger.post(path).status, 401);
        QCOMPARE(stranger.get("/api/files/download?name=Test%20Card.mp4").status, 401);
        RawExchange upload(m_tv.port(), "api/files/upload?name=x.mkv", 100'000'000);
        upload.read(5000);
        QVERIFY(upload.received.startsWith("HTTP/1.1 401 "));
        QVERIFY(!upload.peerWasSilent); // it does not wait for the body

        QCOMPARE(command("pause").status, 409);
        QCOMPARE(command("play&name=Nothing.mp4").status, 404);
        QCOMPARE(command("dance").status, 400);
        QCOMPARE(m_client->post("/api/files/move?name=Test%20Card.mp4&target=attic").status, 400);
        QCOMPARE(m_client->post("/api/files/move?name=Test%20Card.mp4&target=internal").status,
                 409);
        QCOMPARE(m_client->post("/api/files/delete?name=..%2FTest%20Card.mp4").status, 400);
        QCOMPARE(m_client->put("/api/files/upload?name=..%2Fx.mkv", "x").status, 400);
    }

    void playsAFileWithItsTracksToItsEnd() {
        QCOMPARE(command(("play&name=" + MovieParameter).constData()).status, 200);
        QCOMPARE(command("set_speed&speed=4").status, 200);
        const auto positionMs = [this] {
            return state("playback")["positionMs"_L1].toInteger();
        };
        QElapsedTimer elapsed;
        elapsed.start();
        qint64 elapsedMs = 0;
        QTRY_VERIFY((elapsedMs = elapsed.elapsed()) > 100 && positionMs() >= 4 * elapsedMs);

        QCOMPARE(command("play&name=Two.Languages.2024.mkv").status, 200);
        const QStringList languages{u"English"_s, u"Deutsch"_s};
        QCOMPARE(labels(state("playback")["audioTracks"_L1]), languages);
        QCOMPARE(labels(state("playback")["subtitleTracks"_L1]), languages);
        QCOMPARE(command("set_audio&trackId=77").status, 400);
        QCOMPARE(command("set_speed&speed=9").status, 400);

        QCOMPARE(command("play&name=Test%20Card.mp4").status, 200); // with subtitle files beside it
        QCOMPARE(labels(state("playback")["subtitleTracks"_L1]).size(), 2);
        QCOMPARE(command("set_subtitle&trackId=Test%20Card.de.srt").status, 200);
        QCOMPARE(command("seek_to&positionMs=1000").status, 200);
        QCOMPARE(command("set_speed&speed=4").status, 200);
        QTRY_VERIFY(!state("playback")["isPlaying"_L1].toBool());
        const QJsonObject end = state("playback");
        QVERIFY(end["durationMs"_L1].toInt() >= 4000);
        QCOMPARE(end["positionMs"_L1], end["durationMs"_L1]);
    }

    void aMoveEndsWithItsDriveAndLosesNothing() {
        const char* start = "/api/files/move?name=Test%20Card.mp4&target=usb";
        const QStringList before = filesIn(m_usb.path());
        QCOMPARE(m_client->post(start).status, 200);
        QCOMPARE(state("move-status")["state"_L1].toString(), u"MOVING"_s);
        QCOMPARE(m_client->post(start).status, 409);
        QCOMPARE(m_client->post("/api/files/delete?name=Test%20Card.mp4").status, 409);
        m_tv.stop(); // at once, although the move takes an hour
        QCOMPARE(m_tv.exitCode(), 0);
        QVERIFY(filesIn(m_tv.mediaFolder()).contains(u"Test Card.mp4"_s));
        QCOMPARE(filesIn(m_usb.path()), before);

        QVERIFY(m_tv.start(
            {u"--generate"_s, u"2"_s, u"--move-seconds"_s, u"1"_s, u"--usb"_s, m_usb.path()}));
        m_client = std::make_unique<TvClient>(m_tv);
        m_client->pair();
        QCOMPARE(m_client->post(start).status, 200);
        QVERIFY(m_tv.changeLibrary({{u"usbConnected"_s, false}}));
        QTRY_COMPARE(state("move-status")["state"_L1].toString(), u"FAILED"_s);
        QVERIFY(filesIn(m_tv.mediaFolder()).contains(u"Test Card.mp4"_s));
        QCOMPARE(filesIn(m_usb.path()), before);
        QCOMPARE(m_client->post(start).status, 409);
    }

    void deletingClosesTheVideo() {
        QCOMPARE(command(("play&name=" + MovieParameter).constData()).status, 200);
        QCOMPARE(state("playback")["durationMs"_L1].toInt(), 90 * 60 * 1000);
        const std::string remove = "/api/files/delete?name=" + MovieParameter.toStdString();
        QCOMPARE(m_client->post(remove).status, 200);
        QVERIFY(!state("playback").contains("currentVideoName"_L1));
        QCOMPARE(m_client->post(remove).status, 404);
    }

    void filesArriveOrAreRefused() {
        const std::string preflight = "/api/files/upload-preflight?name=New.mkv&sizeBytes=100";
        QCOMPARE(m_client->get("/api/upload-status").body, QByteArray("null"));
        QVERIFY(m_tv.changeLibrary({{u"freeBytes"_s, 99}}));
        QCOMPARE(m_client->put(preflight, {}).status, 507);
        QCOMPARE(m_client->put("/api/files/upload?name=New.mkv", QByteArray(100, 'x')).status, 507);
        QVERIFY(m_tv.changeLibrary({{u"freeBytes"_s, QJsonValue()}}));
        QCOMPARE(m_client->put(preflight, "picture").status, 200);
        QVERIFY(fault("api/files/upload", "slow-reading", 1 << 20));
        std::jthread sender([this] {
            TvClient other(m_tv);
            other.token = m_client->token;
            other.put("/api/files/upload?name=New.mkv", QByteArray(1 << 19, 'x'));
        });
        const auto received = [this] {
            return state("upload-status")["receivedBytes"_L1].toInt();
        };
        QTRY_VERIFY(received() > 0 && received() < 1 << 19);
        QVERIFY(!m_client->get("/api/files").body.contains("New.mkv"));
        sender.join();
        QCOMPARE(state("upload-status")["state"_L1].toString(), u"COMPLETED"_s);
        QVERIFY(m_client->get("/api/files").body.contains("New.mkv"));
        QCOMPARE(m_client->get("/api/thumbnail?name=New.mkv").body, QByteArray("picture"));
    }

    void filesAndThumbnailsAreFetched() {
        QFile original(m_tv.mediaFolder() + u"/Colours.webm"_s);
        QVERIFY(original.open(QIODevice::ReadOnly));
        const QByteArray bytes = original.readAll();
        QCOMPARE(m_client->get("/api/files/download?name=Colours.webm").body, bytes);

        const std::string credentials =
            "name=Colours.webm&clientId=mac-1&authToken=" + m_client->token.toStdString();
        httplib::Client player("127.0.0.1", m_tv.port());
        const auto part = [&](const char* range) {
            const auto result = player.Get("/api/files/stream?" + credentials, {{"Range", range}});
            return result ? QByteArray::fromStdString(result->body) : QByteArray();
        };
        QCOMPARE(part("bytes=100-199"), bytes.mid(100, 100));
        QCOMPARE(part("bytes=10-99999999"), bytes.mid(10)); // players ask for more than there is
        QCOMPARE(part("bytes=-7"), bytes.right(7));

        const auto thumbnail = [&] {
            const auto result = player.Get("/api/thumbnail?" + credentials);
            return result ? QByteArray::fromStdString(result->body) : QByteArray();
        };
        QTRY_VERIFY(thumbnail().startsWith("\xff\xd8\xff"));
        QVERIFY(fault("api/files/download", "announce-more", 10));
        QCOMPARE(m_client->get("/api/files/download?name=Colours.webm").status, 0);
    }

private:
    Reply command(const char* text) {
        return m_client->post("/api/playback?command=" + std::string(text));
    }
    QJsonObject state(const char* of) { return m_client->get(std::string("/api/") + of).json; }
    bool fault(const char* path, const char* kind, int number = 0) {
        return m_tv.setFault({{u"path"_s, QLatin1String(path)},
                              {u"kind"_s, QLatin1String(kind)},
                              {u"bytes"_s, number},
                              {u"bytesPerSecond"_s, number}});
    }

    QTemporaryDir m_usb;
    SimulatorProcess m_tv;
    std::unique_ptr<TvClient> m_client;
};

QTEST_GUILESS_MAIN(TestSimulatedMedia)
#include "simulated_media_test.moc"
