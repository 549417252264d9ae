#include "support/model_fixture.h"
#include "support/test_main.h"

#include <QLocale>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace quiv;

namespace {

QByteArray playing(const QByteArray& name, int positionMs = 1000, bool isPlaying = true) {
    return R"({"currentVideoName":")" + name + R"(","isPlaying":)" +
           (isPlaying ? "true" : "false") + R"(,"positionMs":)" + QByteArray::number(positionMs) +
           R"(,"durationMs":60000})";
}

struct Fixture : ModelFixture {
    RemotePlayback& playback() { return *model.playback(); }
    // What a reading says is known.
    void read(const QByteArray& body) {
        const Task<> reading = playback().refreshPlayback(Errors::Reported);
        http.answer(PlaybackPath, body);
        http.sent.clear();
    }
    std::int64_t position() { return playback().playback()->positionMs; }
};

} // namespace

class RemotePlaybackTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void commandsSayExactlyWhatTheyMean_data() {
        QTest::addColumn<PlaybackCommand>("command");
        QTest::addColumn<QString>("query");
        const auto row = [](const char* query, const PlaybackCommand& command) {
            QTest::newRow(query) << command << QString::fromLatin1(query);
        };
        using Command = PlaybackCommand;
        row("command=play&name=a%20%2B%26b%C3%A9.mkv", Command::play(u"a +&bé.mkv"_s));
        row("command=pause", Command::pause());
        row("command=resume", Command::resume());
        row("command=stop", Command::stop());
        row("command=seek_by&offsetMs=-10000", Command::seekBy(-10'000));
        row("command=seek_to&positionMs=0", Command::seekTo(-5));
        row("command=seek_to&positionMs=3600000", Command::seekTo(3'600'000));
        row("command=set_speed&speed=1.25", Command::setSpeed(1.25));
        row("command=set_speed&speed=2.00", Command::setSpeed(2));
        row("command=set_subtitle", Command::setSubtitle(std::nullopt));
        row("command=set_subtitle&trackId=OFF", Command::setSubtitle(u"OFF"_s));
        row("command=set_subtitle&trackId=", Command::setSubtitle(QString()));
        row("command=set_audio&trackId=2", Command::setAudio(u"2"_s));
    }
    void commandsSayExactlyWhatTheyMean() {
        QFETCH(PlaybackCommand, command);
        QFETCH(QString, query);
        QLocale::setDefault(QLocale(QLocale::German));
        Fixture fixture;
        fixture.selectPaired(FirstTv);
        fixture.playback().send(command);
        QCOMPARE(fixture.takeTargets(PlaybackPath), QStringList(u"POST api/playback?"_s + query));
        fixture.http.answer(PlaybackPath, "not read");
        QCOMPARE(fixture.status(), u"Sent playback command: "_s + command.command);
        QCOMPARE(fixture.takeTargets(PlaybackPath), QStringList(u"GET api/playback"_s));
    }

    void togglingDependsOnWhatTheTvShows() {
        const auto playback = [](const std::optional<QString>& name, bool isPlaying) {
            PlaybackResponse response;
            response.currentVideoName = name;
            response.isPlaying = isPlaying;
            return response;
        };
        const QString name = u"a.mkv"_s;
        QCOMPARE(toggleCommand(std::nullopt, name), PlaybackCommand::play(name));
        QCOMPARE(toggleCommand(playback(std::nullopt, true), name), PlaybackCommand::play(name));
        QCOMPARE(toggleCommand(playback(u"A.mkv"_s, true), name), PlaybackCommand::play(name));
        QCOMPARE(toggleCommand(playback(name, true), name), PlaybackCommand::pause());
        QCOMPARE(toggleCommand(playback(name, false), name), PlaybackCommand::resume());
    }

    void aSecondClickDoesNotUndoTheFirst() {
        Fixture fixture;
        fixture.selectPaired(FirstTv);
        fixture.playback().togglePlayback(u"a.mkv"_s);
        fixture.playback().togglePlayback(u"a.mkv"_s);
        fixture.http.answer(PlaybackPath, QByteArray());
        fixture.playback().togglePlayback(u"a.mkv"_s); // its outcome is not read yet
        QCOMPARE(
            fixture.takeTargets(PlaybackPath),
            QStringList({u"POST api/playback?command=play&name=a.mkv"_s, u"GET api/playback"_s}));
        fixture.http.answer(
            PlaybackPath,
            R"({"currentVideoName":"a.mkv","isPlaying":true,"positionMs":0,"durationMs":9})");
        fixture.playback().togglePlayback(u"a.mkv"_s);
        fixture.http.answer(PlaybackPath, QByteArray(), 500);
        fixture.playback().togglePlayback(u"a.mkv"_s); // the one before failed
        const QString pause = u"POST api/playback?command=pause"_s;
        QCOMPARE(fixture.takeTargets(PlaybackPath), QStringList({pause, pause}));
    }

    void refusedCommandsAreSaid_data() {
        QTest::addColumn<int>("status");
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<QString>("message");
        QTest::addColumn<bool>("requiresPairing");
        QTest::newRow("401") << 401 << QByteArray()
                             << u"Pairing required: enter the 3-digit code shown on TV."_s << true;
        QTest::newRow("429") << 429 << QByteArray(R"({"ok":false,"error":" Wait. "})") << u"Wait."_s
                             << true;
        QTest::newRow("500") << 500 << QByteArray("<html>") << u"<html>"_s << false;
        QTest::newRow("garbage") << 503 << QByteArray("\xff\xfe") << u"Upload failed (HTTP 503)."_s
                                 << false;
        QTest::newRow("nothing") << 0 << QByteArray()
                                 << HttpError(HttpErrorCode::TimedOut).description() << false;
    }
    void refusedCommandsAreSaid() {
        QFETCH(int, status);
        QFETCH(QByteArray, body);
        QFETCH(QString, message);
        QFETCH(bool, requiresPairing);
        Fixture fixture;
        fixture.selectPaired(FirstTv);
        fixture.playback().send(PlaybackCommand::stop());
        if (status == 0)
            fixture.http.answer(PlaybackPath, HttpErrorCode::TimedOut);
        else
            fixture.http.answer(PlaybackPath, body, status);
        QCOMPARE(fixture.status(), u"Playback command failed: "_s + message);
        QCOMPARE(fixture.pairing().requiresControlPairing, requiresPairing);
        QCOMPARE(fixture.http.waiting(), 0u); // nothing is read after a refusal
    }

    void withoutPairingNothingIsSent() {
        Fixture fixture;
        const Task<bool> unselected = fixture.playback().sendPlaybackCommand(
            PlaybackCommand::stop(), RemotePlayback::ShowStatus::Yes);
        QVERIFY(unselected.isDone());
        fixture.model.selectDevice(FirstTv);
        fixture.playback().send(PlaybackCommand::stop());
        fixture.http.answer(StatusPath, R"({"authorized":false})");
        QCOMPARE(fixture.takeTargets(PlaybackPath), QStringList());
        QCOMPARE(fixture.status(),
                 u"Pairing required for playback. Enter the 3-digit code shown on TV."_s);
    }

    void failedReadingsKeepWhatIsKnown() {
        Fixture fixture;
        fixture.selectPaired(FirstTv);
        fixture.read(playing("a.mkv"));
        const auto before = fixture.playback().playback();
        const Task<> loud = fixture.playback().refreshPlayback(Errors::Reported);
        fixture.http.answer(PlaybackPath, R"({"isPlaying":true})");
        QVERIFY(fixture.status().startsWith(u"Failed to fetch playback: "_s));
        const QString status = fixture.status();
        const Task<> silent = fixture.playback().refreshPlayback(Errors::Quiet);
        fixture.http.answer(PlaybackPath, HttpErrorCode::ConnectionLost);
        QCOMPARE(fixture.status(), status);
        QCOMPARE(fixture.playback().playback(), before);
    }

    void outdatedReadingsAreDropped() {
        Fixture fixture;
        fixture.selectPaired(FirstTv);
        fixture.read(playing("a.mkv", 1));
        const Task<> poll = fixture.playback().refreshPlayback(Errors::Quiet);
        fixture.playback().send(PlaybackCommand::seekTo(30'000));
        // The poll waits first in line, then the command, then what is read after the command.
        QCOMPARE(fixture.takeTargets(PlaybackPath).size(), 2);
        fixture.http.answerLatest(PlaybackPath, "{}");
        QCOMPARE(fixture.http.waiting(), 2u);
        fixture.http.answer(PlaybackPath, playing("a.mkv", 2)); // from before the command
        QCOMPARE(fixture.position(), 1);
        fixture.http.answer(PlaybackPath, playing("a.mkv", 30'000));
        QCOMPARE(fixture.position(), 30'000);
    }

    void anotherTvStartsWithNothing() {
        Fixture fixture;
        fixture.selectPaired(FirstTv);
        fixture.read(playing("a.mkv"));
        fixture.playback().send(PlaybackCommand::stop());
        fixture.model.selectDevice(OtherTv);
        QVERIFY(!fixture.playback().playback());
        const QString status = fixture.status();
        fixture.http.answer(PlaybackPath, "{}", 500); // of the TV before
        QCOMPARE(fixture.status(), status);
        QCOMPARE(fixture.http.waiting(), 0u);
    }
};

static const quiv::TestCase<RemotePlaybackTest> registered;
#include "remote_playback_test.moc"
