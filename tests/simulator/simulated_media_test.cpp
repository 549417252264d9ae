#include "simulator/tv_client.h"
#include "support/test_main.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>

using namespace quiv::simulator;

namespace {

const std::string Movie = "Generated%20Movie%20000000.mp4";

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

QJsonValue member(const QJsonObject& listing, const char* list, const QString& name) {
    const QJsonArray members = listing[QLatin1String(list)].toArray();
    const auto found = std::ranges::find_if(
        members, [&](const QJsonValue& each) { return each["name"_L1] == name; });
    return found == members.end() ? QJsonValue() : QJsonValue(*found);
}

void writeFile(const QString& folder, const char* name, int size) {
    QFile file(folder + u'/' + QLatin1String(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(QByteArray(size, 'x'));
}

} // namespace

// What the TV lists, and what a paired client does with it: plays, moves, deletes, fetches.
class SimulatedMediaTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void listsWhatIsOnItsDisks() {
        const QTemporaryDir usb;
        writeFile(usb.path(), "Trip.mp4", 70);
        SimulatorProcess tv;
        QVERIFY(tv.start({u"--usb"_s, usb.path()}));
        TvClient client(tv);
        for (const char* name : {"Big_Film.mkv", "big_film.en.SRT", "Big_Film 2.srt", "notes.txt"})
            writeFile(tv.mediaFolder(), name, 10);
        QJsonObject listing = client.get("/api/files").json;
        const auto kindOf = [&](const char* name) {
            return member(listing, "files", QLatin1String(name))["kind"_L1].toString();
        };
        QCOMPARE(kindOf("Big_Film.mkv"), u"VIDEO"_s);
        QCOMPARE(kindOf("big_film.en.SRT"), u"SUBTITLE"_s);
        QCOMPARE(kindOf("notes.txt"), u"OTHER"_s);
        QCOMPARE(listing["files"_L1].toArray().size(), 5);
        QCOMPARE(listing["videos"_L1].toArray().size(), 2);
        const QJsonValue video = member(listing, "videos", u"Big_Film.mkv"_s);
        QCOMPARE(video["displayName"_L1].toString(), u"Big Film"_s);
        QCOMPARE(video["sizeBytes"_L1].toInt(), 10);
        QCOMPARE(video["subtitleCount"_L1].toInt(), 1);
        QCOMPARE(video["storageLocation"_L1].toString(), u"INTERNAL"_s);
        QCOMPARE(listing["internalStorage"_L1]["usedBytes"_L1].toInt(), 40);
        QCOMPARE(member(listing, "videos", u"Trip.mp4"_s)["storageLocation"_L1].toString(),
                 u"USB"_s);
        QCOMPARE(listing["usbStorage"_L1]["cachedVideoBytes"_L1].toInt(), 70);
        QCOMPARE(listing["preferredUploadTarget"_L1].toString(), u"USB"_s);

        QVERIFY(tv.change(u"library"_s, {{u"usbConnected"_s, false}}));
        listing = client.get("/api/files").json;
        QCOMPARE(listing["files"_L1].toArray().size(), 4);
        QCOMPARE(listing["usbStorage"_L1]["isConnected"_L1].toBool(true), false);
        QCOMPARE(listing["preferredUploadTarget"_L1].toString(), u"INTERNAL"_s);
        QVERIFY(tv.change(u"name"_s, {{u"name"_s, u"Küche"_s}}));
        QCOMPARE(client.get("/api/info").json["name"_L1].toString(), u"Küche"_s);
    }

    void generatedEntriesChangeOnDemandAlone() {
        SimulatorProcess tv;
        QVERIFY(tv.start({u"--generate"_s, u"2000"_s}));
        const auto listing = [&] {
            return TvClient(tv).get("/api/files");
        };
        const QByteArray first = listing().body;
        QCOMPARE(listing().json["files"_L1].toArray().size(), 2000);
        QVERIFY(listing().body == first);
        tv.stop();
        QVERIFY(tv.start({u"--generate"_s, u"2000"_s})); // another run
        QVERIFY(listing().body == first);

        const QString name = u"Generated Movie 000001.mp4"_s;
        const auto change = [&](const char* action, const QString& entry,
                                const QString& display = {}) {
            return tv.change(u"library"_s, {{u"action"_s, QLatin1String(action)},
                                            {u"name"_s, entry},
                                            {u"displayName"_s, display}});
        };
        const auto modified = [&] {
            return member(listing().json, "files", name)["lastModifiedMs"_L1].toInteger();
        };
        const qint64 before = modified();
        QVERIFY(change("touch", name));
        QCOMPARE(modified(), before + 1);
        QVERIFY(change("rename", name, u"A \"b\" \\ c\n"_s));
        QCOMPARE(member(listing().json, "videos", name)["displayName"_L1].toString(),
                 u"A \"b\" \\ c\n"_s);
        QVERIFY(change("remove", name));
        QVERIFY(!change("remove", name));
        QVERIFY(change("add", u"New.srt"_s));
        QVERIFY(!change("add", u"New.srt"_s));
        QCOMPARE(member(listing().json, "files", u"New.srt"_s)["kind"_L1], u"SUBTITLE"_s);
        QCOMPARE(listing().json["files"_L1].toArray().size(), 2000);
    }

    void strangersAndSenselessRequestsAreRefused() {
        start(u"3600"_s);
        TvClient stranger(m_tv);
        for (const char* path : {"/api/playback?command=stop", "/api/files/move?name=x&target=usb",
                                 "/api/files/delete?name=Test%20Card.mp4"})
            QCOMPARE(stranger.post(path).status, 401);
        QCOMPARE(stranger.get("/api/files/download?name=Test%20Card.mp4").status, 401);
        // It does not wait for the body.
        QCOMPARE(stranger.putNothing("/api/files/upload?name=x.mkv", 100'000'000).status, 401);

        QCOMPARE(command("pause").status, 409);
        QCOMPARE(command("play&name=Nothing.mp4").status, 404);
        QCOMPARE(command("dance").status, 400);
        QCOMPARE(m_client->post("/api/files/move?name=Test%20Card.mp4&target=attic").status, 400);
        QCOMPARE(m_client->post("/api/files/move?name=Test%20Card.mp4&target=internal").status,
                 409);
        QCOMPARE(m_client->post("/api/files/delete?name=..%2FTest%20Card.mp4").status, 400);
        QCOMPARE(m_client->put("/api/files/upload?name=..%2Fx.mkv", "x").status, 400);

        QCOMPARE(m_client->get("/api/upload-status").body, QByteArray("null"));
        QVERIFY(m_tv.change(u"library"_s, {{u"freeBytes"_s, 99}}));
        for (const char* path : {"/api/files/upload-preflight?name=New.mkv&sizeBytes=100",
                                 "/api/files/upload?name=New.mkv"})
            QCOMPARE(m_client->put(path, QByteArray(100, 'x')).status, 507);
    }

    void playsAFileWithItsTracksToItsEnd() {
        QCOMPARE(command("play&name=" + Movie).status, 200);
        QCOMPARE(state("playback")["durationMs"_L1].toInt(), 90 * 60 * 1000);
        QCOMPARE(command("set_speed&speed=4").status, 200);
        QElapsedTimer elapsed;
        elapsed.start();
        qint64 elapsedMs = 0;
        QTRY_VERIFY((elapsedMs = elapsed.elapsed()) > 100 &&
                    state("playback")["positionMs"_L1].toInteger() >= 4 * elapsedMs);
        QCOMPARE(m_client->post("/api/files/delete?name=" + Movie).status, 200);
        QVERIFY(!state("playback").contains("currentVideoName"_L1));
        QCOMPARE(m_client->post("/api/files/delete?name=" + Movie).status, 404);

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

    void playersFetchPartsOfAFile() {
        QFile original(m_tv.mediaFolder() + u"/Colours.webm"_s);
        QVERIFY(original.open(QIODevice::ReadOnly));
        const QByteArray bytes = original.readAll();
        httplib::Client player("127.0.0.1", m_tv.port());
        const auto part = [&](const char* range) {
            const auto result = player.Get("/api/files/stream?name=Colours.webm&clientId=mac-1"
                                           "&authToken=" +
                                               m_client->token.toStdString(),
                                           {{"Range", range}});
            return result ? QByteArray::fromStdString(result->body) : QByteArray();
        };
        QCOMPARE(part("bytes=100-199"), bytes.mid(100, 100));
        QCOMPARE(part("bytes=10-99999999"), bytes.mid(10)); // players ask for more than there is
        QCOMPARE(part("bytes=-7"), bytes.right(7));
    }

    void aMoveEndsWithItsDriveAndLosesNothing() {
        const char* move = "/api/files/move?name=Test%20Card.mp4&target=usb";
        const QStringList before = filesIn(m_usb.path());
        QCOMPARE(m_client->post(move).status, 200);
        QCOMPARE(state("move-status")["state"_L1].toString(), u"MOVING"_s);
        QCOMPARE(m_client->post(move).status, 409);
        QCOMPARE(m_client->post("/api/files/delete?name=Test%20Card.mp4").status, 409);
        m_tv.stop(); // at once, although the move takes an hour
        QCOMPARE(m_tv.exitCode(), 0);
        QVERIFY(filesIn(m_tv.mediaFolder()).contains(u"Test Card.mp4"_s));
        QCOMPARE(filesIn(m_usb.path()), before);

        start(u"1"_s);
        QCOMPARE(m_client->post(move).status, 200);
        QVERIFY(m_tv.change(u"library"_s, {{u"usbConnected"_s, false}}));
        QTRY_COMPARE(state("move-status")["state"_L1].toString(), u"FAILED"_s);
        QVERIFY(filesIn(m_tv.mediaFolder()).contains(u"Test Card.mp4"_s));
        QCOMPARE(filesIn(m_usb.path()), before);
        QCOMPARE(m_client->post(move).status, 409);
    }

private:
    void start(const QString& moveSeconds) {
        m_tv.useSampleMedia();
        QVERIFY2(m_tv.start({u"--generate"_s, u"2"_s, u"--usb"_s, m_usb.path(), u"--move-seconds"_s,
                             moveSeconds}),
                 qPrintable(m_tv.errorText()));
        m_client = std::make_unique<TvClient>(m_tv);
        m_client->pair();
    }
    Reply command(const std::string& text) {
        return m_client->post("/api/playback?command=" + text);
    }
    QJsonObject state(const char* of) { return m_client->get(std::string("/api/") + of).json; }

    QTemporaryDir m_usb;
    SimulatorProcess m_tv;
    std::unique_ptr<TvClient> m_client;
};

static const quiv::TestCase<SimulatedMediaTest> registered;
#include "simulated_media_test.moc"
