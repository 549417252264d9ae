#include "platform/player/external_player_search.h"
#include "platform/player/player_screen.h"
#include "platform/player/plugin_media_players.h"
#include "simulator/simulator_process.h"
#include "support/raw_server.h"
#include "support/real_model.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QProcess>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace quiv;
using quiv::simulator::SimulatorProcess;

namespace {

const QString StreamPath = u"api/files/stream"_s;
constexpr qsizetype FewThreads = 20; // of the test and what a player leaves for a moment

class NoResolver final : public HostResolver {
public:
    Task<std::optional<HostAddress>> resolve(QString, std::chrono::milliseconds) override {
        co_return std::nullopt;
    }
    void forget(const QString&) override {}
};

// A player with something to draw on, and what it reported.
class Opened {
public:
    Opened(PluginMediaPlayers& players, const QUrl& address) : m_opening(open(players, address)) {}
    ~Opened() { m_video.reset(); }

    MediaPlayer& player() { return *m_opened.player; }
    const ScreenState& screen() { return m_opened.screen->state(); }
    bool isReady() const { return m_report.status == ItemStatus::ReadyToPlay; }
    bool hasFailed() const { return m_report.status == ItemStatus::Failed; }
    QString error() const { return m_report.error; }
    bool isAt(double seconds, double tolerance) {
        return !screen().isBuffering && std::abs(player().currentTime() - seconds) <= tolerance;
    }

private:
    Task<> open(PluginMediaPlayers& players, QUrl address) {
        m_opened = co_await players.open(address);
        m_video.reset(m_opened.screen->makeVideo());
        m_observation =
            m_opened.player->observeStatus([this](const ItemReport& report) { m_report = report; });
    }

    OpenedPlayer m_opened;
    std::unique_ptr<QQuickItem> m_video;
    std::unique_ptr<Observation> m_observation;
    ItemReport m_report;
    Task<> m_opening;
};

qsizetype threads() {
    return QDir(u"/proc/self/task"_s).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size();
}

void run(const QString& program, const QStringList& arguments, const QString& folder) {
    QProcess process;
    process.setWorkingDirectory(folder);
    process.start(program, arguments);
    QVERIFY(process.waitForFinished() && process.exitCode() == 0);
}

// Of the range that a request asks for; 0 if it asks for none.
qint64 firstByteOf(const QJsonObject& request) {
    const QString text = QString::fromUtf8(QJsonDocument(request).toJson());
    return text.section(u"bytes="_s, 1, 1).section(u'-', 0, 0).toLongLong();
}

} // namespace

// The player of this computer with media of a TV beside it.
class LocalPlayerTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
        m_tv.useSampleMedia();
        QVERIFY2(m_tv.start(), qPrintable(m_tv.errorText()));
        m_real = std::make_unique<RealModel>();
        m_real->find(m_tv.port());
        QTRY_VERIFY(m_real->pairing().requiresControlPairing);
        m_real->model.pairing()->verifyPairingCode(m_tv.pairingCode());
        QTRY_VERIFY(m_real->pairing().isControlPaired);
    }
    void cleanup() {
        m_tv.clearFaults();
        m_tv.clearRequests();
    }

    void aSeekShowsThatPicture_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<double>("frame"); // s
        QTest::newRow("mp4") << u"Test Card.mp4"_s << 1 / 15.0;
        QTest::newRow("mkv") << u"Two.Languages.2024.mkv"_s << 1 / 15.0;
        QTest::newRow("webm") << u"Colours.webm"_s << 1 / 10.0;
        QTest::newRow("avi") << u"Old_Camera.avi"_s << 1 / 10.0;
    }
    void aSeekShowsThatPicture() {
        QFETCH(QString, name);
        QFETCH(double, frame);
        Opened video(m_players, urlOf(name));
        QTRY_VERIFY(video.isReady());
        video.player().seek(1.47);
        QTRY_VERIFY2(video.isAt(1.47, frame),
                     qPrintable(QString::number(video.player().currentTime())));
        QVERIFY(video.screen().hasPicture);
        QVERIFY(video.screen().duration > 1.9);
        for (int number = 0; number < 2'000; ++number)
            video.player().seek(number % 17 / 10.0);
        video.player().seek(0.5);
        QTRY_VERIFY(video.isAt(0.5, frame));
    }

    void tracksAreSelectedByThePlayer() {
        Opened video(m_players, urlOf(u"Two.Languages.2024.mkv"_s));
        QTRY_VERIFY(video.isReady());
        const auto names = [&](MediaKind kind) {
            QStringList labels;
            const MediaGroup group = *video.player().group(kind);
            for (const MediaOption& option : group.options)
                labels.append(option.displayName);
            return labels;
        };
        const auto selected = [&](MediaKind kind) {
            return video.player().group(kind)->selected;
        };
        QCOMPARE(names(MediaKind::Audio), QStringList({u"English"_s, u"German"_s}));
        QCOMPARE(names(MediaKind::Subtitles), QStringList({u"English"_s, u"German"_s}));
        for (const MediaKind kind : {MediaKind::Audio, MediaKind::Subtitles}) {
            const auto german = video.player().group(kind)->options.at(1).id;
            QVERIFY(selected(kind) != german);
            video.player().select(kind, german);
            QTRY_COMPARE(selected(kind), std::optional(german));
        }
        video.player().select(MediaKind::Subtitles, std::nullopt);
        QTRY_COMPARE(selected(MediaKind::Subtitles), std::nullopt);
    }

    void itPlaysToTheEndAndAgain() {
        // A connection that breaks is made again where it broke.
        QVERIFY(m_tv.setFault({{u"path"_s, StreamPath},
                               {u"kind"_s, u"reset-after-bytes"_s},
                               {u"bytes"_s, 20'000},
                               {u"skip"_s, 1},
                               {u"times"_s, 1}}));
        Opened video(m_players, urlOf(u"Old_Camera.avi"_s));
        QTRY_VERIFY(video.isReady());
        video.player().play();
        QTRY_VERIFY(!video.screen().isBuffering && video.screen().isPlaying);
        QTRY_VERIFY(!video.screen().isPlaying);
        QVERIFY(video.screen().position > 1.8);
        video.player().play();
        QTRY_VERIFY(video.screen().isPlaying && video.screen().position < 1);
        QVERIFY(!video.hasFailed());
    }

    void whatIsFarAwayIsReadFromThere() {
        const QUrl url = urlOf(u"Harbour Tour.mkv"_s);
        const qint64 size = QFileInfo(m_tv.mediaFolder() + u"/Harbour Tour.mkv"_s).size();
        const int rate =
            int(size / 20); // bytes a second: the whole would take longer than the test
        QVERIFY(m_tv.setFault(
            {{u"path"_s, StreamPath}, {u"kind"_s, u"trickle"_s}, {u"bytesPerSecond"_s, rate}}));
        Opened video(m_players, url);
        QTRY_VERIFY_WITH_TIMEOUT(video.isReady(), 15'000);
        m_tv.clearRequests();
        video.player().seek(600);
        QTRY_VERIFY_WITH_TIMEOUT(video.isAt(600, 2), 15'000);
        QVERIFY(firstByteOf(m_tv.requestsTo(StreamPath).last().toObject()) > size / 2);
    }

    void whatNobodyCanDecodeFails() {
        Opened video(m_players, urlOf(u"Broken Download.mp4"_s));
        QTRY_VERIFY(video.hasFailed());
        QVERIFY(!video.error().isEmpty());
        QVERIFY(!video.error().contains(u"Token"_s));
    }

    void noFileLeadsToAnother_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("text"); // %1: a film on this computer, %2: one elsewhere
        const auto row = [](const char* name, const QByteArray& text) {
            QTest::newRow(name) << QString::fromLatin1(name) << text;
        };
        row("playlist.m3u", "#EXTM3U\n%1\n%2\n");
        row("list.mp4", "%1\n");
        row("live.m3u8", "#EXTM3U\n#EXT-X-TARGETDURATION:4\n#EXTINF:4,\n%2\n#EXTINF:4,\n%1\n"
                         "#EXT-X-ENDLIST\n");
        row("edits.edl", "# mpv EDL v0\n%1\n%2\n");
        row("cuts.mkv", "# mpv EDL v0\nfile=%1,length=2\n");
        row("sheet.cue", "FILE \"%1\" WAVE\n  TRACK 01 AUDIO\n    INDEX 01 00:00:00\n");
        row("concat.mp4", "ffconcat version 1.0\nfile %1\nfile %2\n");
        row("session.sdp", "v=0\no=- 0 0 IN IP4 127.0.0.1\ns=x\nc=IN IP4 127.0.0.1\n"
                           "m=video 5004 RTP/AVP 96\n");
        row("dash.mpd", "<?xml version=\"1.0\"?><MPD xmlns=\"urn:mpeg:dash:schema:mpd:2011\" "
                        "type=\"static\"><Period><AdaptationSet mimeType=\"video/mp4\">"
                        "<Representation id=\"1\" bandwidth=\"1\"><BaseURL>%2</BaseURL>"
                        "</Representation></AdaptationSet></Period></MPD>");
        row("words.ass", "[Script Info]\nVideo File: %1\nAudio URI: %2\n\n[Events]\n");
        row("pictures.idx", "# VobSub index file, v7\nid: en, index: 0\n"
                            "timestamp: 00:00:01:000, filepos: 000000000\n");
    }
    void noFileLeadsToAnother() {
        QFETCH(QString, name);
        QFETCH(QByteArray, text);
        RawServer elsewhere([](RawServer::Connection& connection) { connection.readHeaders(); });
        QFile file(m_tv.mediaFolder() + u'/' + name);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(QByteArray(text)
                       .replace("%1", (m_tv.mediaFolder() + u"/Test Card.mp4"_s).toUtf8())
                       .replace("%2", elsewhere.url("/film.mp4")));
        file.close();
        Opened video(m_players, urlOf(name));
        QTRY_VERIFY(video.hasFailed());
        QCOMPARE(elsewhere.handledConnections(), 0);
    }

    void chaptersOfAnotherFileAreNotPlayed() {
        const QString folder = m_tv.mediaFolder();
        run(u"mkvmerge"_s,
            {u"-q"_s, u"-o"_s, u"other.mkv"_s, u"--segment-uid"_s,
             u"0x00112233445566778899aabbccddeeff"_s, u"Test Card.mp4"_s},
            folder);
        QFile chapters(folder + u"/chapters.xml"_s);
        QVERIFY(chapters.open(QIODevice::WriteOnly));
        chapters.write(R"(<?xml version="1.0"?><Chapters><EditionEntry>
<EditionFlagOrdered>1</EditionFlagOrdered>
<ChapterAtom><ChapterTimeStart>00:00:00</ChapterTimeStart><ChapterTimeEnd>00:00:01</ChapterTimeEnd>
</ChapterAtom><ChapterAtom><ChapterTimeStart>00:00:00</ChapterTimeStart>
<ChapterTimeEnd>00:00:04</ChapterTimeEnd>
<ChapterSegmentUID format="hex">00112233445566778899aabbccddeeff</ChapterSegmentUID>
</ChapterAtom></EditionEntry></Chapters>)");
        chapters.close();
        run(u"mkvmerge"_s,
            {u"-q"_s, u"-o"_s, u"chapters.mkv"_s, u"--chapters"_s, u"chapters.xml"_s,
             u"Two.Languages.2024.mkv"_s},
            folder);
        Opened video(m_players, urlOf(u"chapters.mkv"_s));
        QTRY_VERIFY(video.isReady());
        QTRY_VERIFY(std::abs(video.screen().duration - 3) < 0.2); // its own, neither 1 + 4 nor 1
    }

    void noOtherHostIsAsked() {
        RawServer elsewhere([](RawServer::Connection& connection) { connection.readHeaders(); });
        RawServer tv([&](RawServer::Connection& connection) {
            connection.readHeaders();
            connection.write("HTTP/1.1 302 Found\r\nLocation: " + elsewhere.url("/film.mp4") +
                             "\r\nContent-Length: 0\r\n\r\n");
        });
        Opened video(m_players, QUrl::fromEncoded(tv.url("/film.mp4?authToken=secret")));
        QTRY_VERIFY(video.hasFailed());
        QCOMPARE(video.error(), u"the TV answered with HTTP 302"_s);
        QCOMPARE(elsewhere.handledConnections(), 0);
    }

    void vlcIsStartedAsItsDesktopEntrySays_data() {
        QTest::addColumn<QByteArray>("entry");
        QTest::addColumn<QStringList>("command");
        const auto row = [](const QByteArray& exec, const QStringList& command) {
            QTest::newRow(exec.constData())
                << "[Other]\nExec=no\n[Desktop Entry]\nName=VLC\nExec=" + exec +
                       "\n[Desktop Action x]\nExec=no\n"
                << command;
        };
        row("/usr/bin/vlc --started-from-file %U",
            {u"/usr/bin/vlc"_s, u"--started-from-file"_s, u"A"_s});
        row("\"/opt/a b/vlc\" %f --x=%%1 %i", {u"/opt/a b/vlc"_s, u"A"_s, u"--x=%1"_s});
        row("vlc", {u"vlc"_s, u"A"_s});
    }
    void vlcIsStartedAsItsDesktopEntrySays() {
        QFETCH(QByteArray, entry);
        QFETCH(QStringList, command);
        QCOMPARE(withAddress(commandOf(entry), u"A"_s), command);
        QCOMPARE(commandOf("[Desktop Entry]\nName=VLC\n"), QStringList());
    }

    void openingAndClosingLeavesNothing() {
        const QUrl url = urlOf(u"Test Card.mp4"_s);
        const auto openAndClose = [&](int number) {
            Opened video(m_players, url);
            if (number % 3 == 0)
                return; // before it is ready
            QTRY_VERIFY(video.isReady());
            video.player().play();
            if (number % 3 == 1)
                QTRY_VERIFY(video.screen().hasPicture);
        };
        openAndClose(1);
        QTRY_VERIFY(threads() < FewThreads);
        const qsizetype before = threads();
        for (int number = 0; number < 100; ++number)
            openAndClose(number);
        QTRY_VERIFY2(threads() <= before, qPrintable(QString::number(threads())));
    }

    void closingDoesNotWaitForATvThatHangs() {
        const QUrl url = urlOf(u"Test Card.mp4"_s);
        QVERIFY(m_tv.setFault({{u"path"_s, StreamPath}, {u"kind"_s, u"hang"_s}}));
        QElapsedTimer since;
        {
            const Opened video(m_players, url);
            QVERIFY(m_tv.waitForRequests(StreamPath, 2));
            since.start();
        }
        QVERIFY(since.elapsed() < 100);
        QTRY_VERIFY(threads() < FewThreads);
    }

private:
    // The address, with this client's credentials, that the player gets for a file of the TV.
    QUrl urlOf(const QString& name) {
        auto& addresses = m_real->local.players.addresses;
        addresses.clear();
        m_real->model.localPlayback()->startLocalPlayback(name, {}, {});
        if (!QTest::qWaitFor([&] { return !addresses.isEmpty(); }))
            return {};
        m_real->model.localPlayback()->closeLocalPlayback();
        return addresses.constFirst();
    }

    SimulatorProcess m_tv;
    std::unique_ptr<RealModel> m_real;
    NoResolver m_resolver;
    PluginMediaPlayers m_players{m_resolver};
};

QTEST_MAIN(LocalPlayerTest)
#include "local_player_test.moc"
