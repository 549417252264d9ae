#include "support/model_fixture.h"
#include "support/test_main.h"

#include <QTest>
#include <QUrlQuery>

using namespace Qt::StringLiterals;
using namespace quiv;

namespace {

const QString StreamPath = u"api/files/stream"_s;
const QString Name = u"Ein Film +&ü.mkv"_s;
const QString NoVlcText = u"macOS could not decode this stream. Open in VLC or use Play on TV."_s;

QByteArray onTv(const QByteArray& name, int positionMs = 1000) {
    return R"({"currentVideoName":")" + name + R"(","isPlaying":true,"positionMs":)" +
           QByteArray::number(positionMs) + R"(,"durationMs":60000})";
}

struct Fixture : ModelFixture {
    Fixture() { selectPaired(FirstTv); }

    LocalPlayback& here() { return *model.localPlayback(); }
    const LocalPlaybackState& state() { return here().state(); }
    std::shared_ptr<FakePlayer> player() { return local.players.newest.lock(); }
    QString error() { return state().localPlaybackErrorMessage.value_or(u"none"_s); }

    void readOnTv(const QByteArray& body) {
        const Task<> reading = model.playback()->refreshPlayback(Errors::Quiet);
        http.answer(PlaybackPath, body);
        http.sent.clear();
    }
    void start(std::optional<std::int64_t> positionMs = {}, const QString& title = u" A film\n"_s) {
        here().startLocalPlayback(Name, title, positionMs);
        http.answer(StreamPath, "ab", 206);
    }
    void ready() { player()->report(ItemStatus::ReadyToPlay); }
};

MediaGroup group(std::optional<std::int64_t> selected) {
    return {{{7, u"English"_s}, {9, u"English"_s}, {8, u"Deutsch"_s}}, selected};
}

} // namespace

class LocalPlaybackTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theTvIsAskedBeforeThePlayer() {
        Fixture fixture;
        fixture.here().startLocalPlayback(Name, u" "_s, {});
        const HttpRequest probe = fixture.http.latest(StreamPath);
        QCOMPARE(probe.url, "http://tv.local:8080/api/files/stream?name=" + percentEncoded(Name));
        QVERIFY(probe.headers.contains(std::pair<QByteArray, QByteArray>("Range", "bytes=0-1")));
        QCOMPARE(probe.timeouts.total, std::chrono::seconds(12));
        QVERIFY(fixture.local.players.addresses.isEmpty());
        fixture.http.answer(StreamPath, "ab", 200,
                            {{"X-Quiv-Auth-Token", "t+1"}, {"X-Quiv-Auth-Expires-In", "86400"}});

        const auto session = fixture.state().localPlaybackSession;
        QVERIFY(session);
        QCOMPARE(session->displayTitle, Name); // there is no other title
        QCOMPARE(session->streamURL.toEncoded(),
                 probe.url + "&clientId=" +
                     fixture.settings.text(u"ombra.controlClientId.v1"_s)->toLatin1() +
                     "&authToken=t%2B1");
        QCOMPARE(fixture.local.players.addresses, QList{session->streamURL});
        QCOMPARE(fixture.player()->calls, QStringList(u"play"_s));
        QCOMPARE(fixture.status(), u"Streaming on this Mac: "_s + Name);
        fixture.start();
        QCOMPARE(fixture.status(), u"Streaming on this Mac: A film"_s);
        QVERIFY(fixture.state().localPlaybackSession->id != session->id);
    }

    void aTvThatRefusesIsSaid_data() {
        QTest::addColumn<int>("status"); // 0: no answer
        QTest::addColumn<QString>("message");
        const QString refused = u"Download failed (HTTP %1)."_s;
        QTest::newRow("404") << 404 << refused.arg(404);
        QTest::newRow("416") << 416 << refused.arg(416);
        QTest::newRow("204") << 204 << refused.arg(204);
        QTest::newRow("401") << 401 << u"Pairing required: enter the 3-digit code shown on TV."_s;
        QTest::newRow("no answer") << 0
                                   << u"Could not reach stream endpoint: "_s +
                                          HttpError(HttpErrorCode::TimedOut).description();
    }
    void aTvThatRefusesIsSaid() {
        QFETCH(int, status);
        QFETCH(QString, message);
        Fixture fixture;
        fixture.start();
        const auto before = fixture.state();
        fixture.here().startLocalPlayback(u"other.mkv"_s, {}, {});
        if (status == 0)
            fixture.http.answer(StreamPath, HttpErrorCode::TimedOut);
        else
            fixture.http.answer(StreamPath, "words", status);
        QCOMPARE(fixture.error(), message);
        QCOMPARE(fixture.status(), u"Local playback failed: "_s + message);
        QCOMPARE(fixture.pairing().requiresControlPairing, status == 401);
        QCOMPARE(fixture.state().localPlaybackSession, before.localPlaybackSession); // plays on
        QCOMPARE(fixture.player()->calls, QStringList(u"play"_s));
        fixture.selectPaired(FirstTv);
        fixture.start();
        QCOMPARE(fixture.error(), u"none"_s);
    }

    void aTvThatSendsTheWholeFilmStreams() {
        Fixture fixture;
        fixture.here().startLocalPlayback(Name, {}, {});
        fixture.http.answer(StreamPath, HttpErrorCode::ReplyTooLarge);
        QVERIFY(fixture.state().localPlaybackSession);
    }

    void theTvStopsFirst() {
        Fixture fixture;
        fixture.readOnTv(onTv("b.mkv"));
        fixture.start();
        QVERIFY(!fixture.player());
        fixture.http.answer(PlaybackPath, QByteArray(), 500); // does not matter
        QCOMPARE(fixture.takeTargets(PlaybackPath),
                 QStringList({u"POST api/playback?command=stop"_s, u"GET api/playback"_s}));
        QVERIFY(!fixture.player());
        fixture.http.answer(PlaybackPath, R"({"isPlaying":false,"positionMs":0,"durationMs":0})");
        QVERIFY(fixture.player());
    }

    void theStartPositionIsSoughtOnce_data() {
        QTest::addColumn<int>("positionMs");
        QTest::addColumn<QStringList>("sought");
        QTest::newRow("before") << -1 << QStringList();
        QTest::newRow("beginning") << 0 << QStringList();
        QTest::newRow("1 ms") << 1 << QStringList(u"seek 0.001"_s);
        QTest::newRow("later") << 90'400 << QStringList(u"seek 90.400"_s);
    }
    void theStartPositionIsSoughtOnce() {
        QFETCH(int, positionMs);
        QFETCH(QStringList, sought);
        Fixture fixture;
        fixture.start(positionMs);
        fixture.ready();
        fixture.ready();
        QCOMPARE(fixture.player()->calls.mid(1), sought);
    }

    void tracksAreOfferedAndSelected() {
        Fixture fixture;
        fixture.here().selectLocalSubtitle(u"subtitle-0-English"_s);
        QCOMPARE(fixture.state().selectedLocalSubtitleID, u"off"_s);
        fixture.start();
        fixture.ready();
        const QList<LocalMediaOption> off{{u"off"_s, u"Off"_s}};
        QCOMPARE(fixture.state().localSubtitleOptions, off);
        QVERIFY(fixture.state().localAudioOptions.isEmpty());

        fixture.player()->subtitles = group(8);
        fixture.player()->audio = group({});
        fixture.ready();
        const QList<LocalMediaOption> audio{{u"audio-0-English"_s, u"English"_s},
                                            {u"audio-1-English"_s, u"English"_s},
                                            {u"audio-2-Deutsch"_s, u"Deutsch"_s}};
        QCOMPARE(fixture.state().localAudioOptions, audio);
        QCOMPARE(fixture.state().selectedLocalAudioID, u"audio-0-English"_s);
        QCOMPARE(fixture.state().localSubtitleOptions.size(), 4);
        QCOMPARE(fixture.state().selectedLocalSubtitleID, u"subtitle-2-Deutsch"_s);

        fixture.player()->calls.clear();
        fixture.here().selectLocalSubtitle(u"subtitle-1-English"_s);
        QCOMPARE(fixture.state().selectedLocalSubtitleID, u"subtitle-1-English"_s);
        fixture.here().selectLocalSubtitle(u"subtitle-1-Français"_s);
        fixture.here().selectLocalSubtitle(u"off"_s);
        fixture.here().selectLocalAudio(u"audio-2-Deutsch"_s);
        fixture.here().selectLocalAudio(u"off"_s);
        QCOMPARE(fixture.player()->calls,
                 QStringList({u"subtitles 9"_s, u"subtitles none"_s, u"audio 8"_s}));
        QCOMPARE(fixture.state().selectedLocalSubtitleID, u"off"_s);
        QCOMPARE(fixture.state().selectedLocalAudioID, u"audio-2-Deutsch"_s);
    }

    void whatCannotBeDecodedIsOfferedElsewhere() {
        Fixture fixture;
        fixture.local.externalPlayer.isInstalled = false;
        fixture.start();
        fixture.player()->report(ItemStatus::Failed, u" \n"_s);
        QCOMPARE(fixture.error(), NoVlcText);
        QCOMPARE(fixture.status(), u"Local playback failed: "_s + NoVlcText);
        QVERIFY(!fixture.state().externalPlayerPrompt->vlcAvailable);
        fixture.here().openStreamInVLC();
        QCOMPARE(fixture.status(), u"VLC is not installed."_s);

        fixture.local.externalPlayer.isInstalled = true;
        fixture.player()->report(ItemStatus::Failed, u" no stream\n"_s);
        QCOMPARE(fixture.error(), u"macOS could not decode this stream (no stream). Open in VLC or "
                                  "use Play on TV."_s);
        const ExternalPlayerPrompt prompt = *fixture.state().externalPlayerPrompt;
        const LocalPlaybackSession session = *fixture.state().localPlaybackSession;
        QCOMPARE(prompt, (ExternalPlayerPrompt{session.streamURL, Name, u"A film"_s, true}));
        fixture.local.externalPlayer.error = u"It is broken."_s;
        fixture.here().openStreamInVLC();
        QCOMPARE(fixture.status(), u"Could not open VLC: It is broken."_s);
        fixture.local.externalPlayer.error.clear();
        fixture.here().openStreamInVLC();
        QCOMPARE(fixture.status(), u"Opened in VLC: A film"_s);
        QCOMPARE(fixture.local.externalPlayer.opened, QList{session.streamURL});
        QVERIFY(fixture.player());
        fixture.ready();
        QCOMPARE(fixture.error(), u"none"_s);
        QVERIFY(!fixture.state().externalPlayerPrompt);
    }

    void theTvGoesOnWhereThisComputerIs_data() {
        QTest::addColumn<double>("time");
        QTest::addColumn<QString>("seek");
        QTest::newRow("unknown") << double(NAN) << QString();
        QTest::newRow("beginning") << 0.0004 << QString();
        QTest::newRow("later") << 90.4 << u"90400"_s;
        QTest::newRow("rounded up") << 1.0005 << u"1001"_s;
    }
    void theTvGoesOnWhereThisComputerIs() {
        QFETCH(double, time);
        QFETCH(QString, seek);
        Fixture fixture;
        fixture.start();
        fixture.http.sent.clear();
        fixture.player()->time = time;
        fixture.here().playLocalSessionOnTV();
        fixture.here().playLocalSessionOnTV();
        fixture.player()->time = 100; // it plays on meanwhile
        fixture.http.answer(PlaybackPath, QByteArray(), 503);
        QVERIFY(fixture.state().localPlaybackSession);
        QVERIFY(fixture.status().startsWith(u"Playback command failed: "_s));

        fixture.player()->time = time;
        fixture.here().playLocalSessionOnTV();
        fixture.http.answer(PlaybackPath, QByteArray());
        QStringList sent = fixture.takeTargets(PlaybackPath).filter(u"POST"_s);
        const QString play =
            u"POST api/playback?command=play&name="_s + QString::fromLatin1(percentEncoded(Name));
        QStringList expected{play, play};
        if (!seek.isEmpty()) {
            QVERIFY(fixture.player());
            expected.append(u"POST api/playback?command=seek_to&positionMs="_s + seek);
            fixture.http.answer(PlaybackPath, "{}"); // what was read after the first command
            fixture.http.answer(PlaybackPath, QByteArray(), 500);
        }
        QCOMPARE(sent, expected);
        QVERIFY(!fixture.player());
        QVERIFY(!fixture.state().localPlaybackSession);
        QCOMPARE(fixture.status(), u"Playing on TV: A film"_s);
    }

    void aRowPlaysHereUnlessTheTvPlays() {
        Fixture fixture;
        fixture.readOnTv(R"({"currentVideoName":" ","isPlaying":false,"positionMs":0,)"
                         R"("durationMs":0})");
        fixture.here().startPrimaryPlayback(u"a.mkv"_s, u"A"_s);
        QCOMPARE(fixture.takeTargets(StreamPath).size(), 1);
        fixture.readOnTv(onTv("b.mkv"));
        fixture.here().closeLocalPlayback();
        fixture.here().startPrimaryPlayback(u"a.mkv"_s, u"A"_s);
        QCOMPARE(fixture.takeTargets(PlaybackPath),
                 QStringList(u"POST api/playback?command=play&name=a.mkv"_s));
        QCOMPARE(fixture.http.waiting(), 1u);
    }

    void closingDropsWhatIsUnderWay() {
        Fixture fixture;
        fixture.start();
        const auto player = fixture.player();
        QVERIFY(fixture.local.sleep.isInhibited);
        player->pause();
        QVERIFY(!fixture.local.sleep.isInhibited);
        player->play();
        fixture.here().startLocalPlayback(u"b.mkv"_s, {}, {});
        fixture.here().closeLocalPlayback();
        QCOMPARE(fixture.state(), LocalPlaybackState());
        QVERIFY(!fixture.local.sleep.isInhibited);
        QCOMPARE(player->calls.constLast(), u"pause"_s);
        QCOMPARE(fixture.http.waiting(), 0u);
        player->report(ItemStatus::Failed); // nobody listens
        QCOMPARE(fixture.state(), LocalPlaybackState());
    }

    void anotherTvEndsIt() {
        Fixture fixture;
        fixture.start();
        fixture.model.selectDevice(FirstTv);
        QVERIFY(fixture.player());
        fixture.model.selectDevice(OtherTv);
        QVERIFY(!fixture.player());
        QCOMPARE(fixture.state(), LocalPlaybackState());
        QCOMPARE(fixture.status(), u"Loading library from Other..."_s);
    }

    void withoutPairingNothingIsAsked() {
        Fixture fixture;
        fixture.model.selectDevice(OtherTv);
        fixture.start();
        fixture.http.answer(StatusPath, R"({"authorized":false})");
        QVERIFY(fixture.takeTargets(StreamPath).isEmpty());
        QCOMPARE(fixture.status(),
                 u"Pairing required for local playback. Enter the 3-digit code shown on TV."_s);
    }
};

static const quiv::TestCase<LocalPlaybackTest> registered;
#include "local_playback_test.moc"
