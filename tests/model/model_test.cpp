#include "support/model_fixture.h"
#include "support/test_main.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace quiv;
using namespace std::chrono_literals;

namespace {

const QByteArray Empty = R"({"files":[],"videos":[]})";
const QByteArray Idle = R"({"isPlaying":false,"positionMs":0,"durationMs":0})";
const QByteArray NoMove = R"({"state":"IDLE","fileName":"","movedBytes":0,"totalBytes":0,
                              "message":"","updatedAtMs":0})";

// The cycle's requests, answered in turn.
struct CycleFixture : ModelFixture {
    void answerFiles() {
        http.answer(FilesPath, Empty);
        turn(); // decoded
    }
    void answerStatus(bool authorized) {
        http.answer(StatusPath, authorized ? R"({"authorized":true,"expiresInSec":9})"
                                           : R"({"authorized":false,"expiresInSec":9})");
    }
    void answerPlayerAndMove() {
        http.answer(PlaybackPath, Idle);
        http.answer(MoveStatusPath, NoMove);
    }
    void finishFirstPass(bool authorized) {
        answerFiles();
        answerPlayerAndMove();
        answerStatus(authorized);
        http.takePaths();
    }
};

} // namespace

class ModelTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void withoutATvNothingIsAsked() {
        CycleFixture fixture;
        fixture.model.appear();
        ModelFixture::turn();
        fixture.clock.advance(1min);
        QVERIFY(fixture.http.paths.isEmpty());
        QCOMPARE(fixture.status(), u"Searching for TVs on local network..."_s);
    }

    void passesFollowTwoSecondsAfterTheEndOfTheLast() {
        CycleFixture fixture;
        fixture.select(FirstTv);
        QCOMPARE(fixture.http.takePaths(), QStringList(FilesPath));
        QVERIFY(fixture.model.library()->isLibraryLoadInProgress());
        fixture.clock.advance(5s); // a slow TV
        fixture.answerFiles();
        QCOMPARE(fixture.http.takePaths(), QStringList(PlaybackPath));
        fixture.answerPlayerAndMove();
        QCOMPARE(fixture.http.takePaths(), QStringList({MoveStatusPath, StatusPath}));
        QCOMPARE(fixture.http.sent.last().timeouts.total, 5s);
        fixture.answerStatus(true);
        for (int pass = 0; pass < 3; ++pass) {
            fixture.clock.advance(1999ms);
            QVERIFY(fixture.http.paths.isEmpty());
            fixture.clock.advance(1ms);
            QCOMPARE(fixture.http.takePaths(), QStringList(PlaybackPath));
            fixture.answerPlayerAndMove();
            QCOMPARE(fixture.http.takePaths(), QStringList({MoveStatusPath, FilesPath}));
            fixture.clock.advance(5s);
            fixture.answerFiles();
            QCOMPARE(fixture.http.takePaths(), QStringList(StatusPath));
            QCOMPARE(fixture.http.sent.last().timeouts.total, 2s);
            fixture.answerStatus(true);
        }
    }

    void whilePairingIsRequiredOnlyItsStatusIsAsked() {
        CycleFixture fixture;
        fixture.select(FirstTv);
        fixture.finishFirstPass(false);
        QCOMPARE(fixture.status(), u"Pairing required. Enter the 3-digit code shown on TV."_s);
        for (int pass = 0; pass < 3; ++pass) {
            fixture.clock.advance(2s);
            QCOMPARE(fixture.http.takePaths(), QStringList(StatusPath));
            fixture.answerStatus(pass == 2);
        }
        fixture.clock.advance(2s);
        QCOMPARE(fixture.http.takePaths(), QStringList(PlaybackPath));
    }

    void laterFailuresAreSilent() {
        CycleFixture fixture;
        fixture.select(FirstTv);
        fixture.finishFirstPass(true);
        const QString status = fixture.status();
        fixture.clock.advance(2s);
        for (const QString& path : {PlaybackPath, MoveStatusPath, FilesPath, StatusPath})
            QVERIFY(fixture.http.answer(path, HttpErrorCode::TimedOut));
        QCOMPARE(fixture.status(), status);
        fixture.clock.advance(2s);
        QCOMPARE(fixture.http.takePaths().last(), PlaybackPath);
    }

    void aTvThatIsSilentForTwoPassesIsOutOfReachUntilItAnswers() {
        CycleFixture fixture;
        fixture.model.appear();
        fixture.clock.advance(2s);
        fixture.browser.announce(serviceAt(u"TV"_s, {10, 0, 0, 1}, 80));
        fixture.clock.advance(0ms);
        fixture.http.answer(InfoPath, R"({"name":"Known"})");
        ModelFixture::turn();
        fixture.finishFirstPass(true);
        const QString status = fixture.status();
        for (int pass = 0; pass < 2; ++pass) {
            QVERIFY(fixture.model.state().isReachable);
            fixture.clock.advance(2s);
            for (const QString& path : {PlaybackPath, MoveStatusPath, FilesPath, StatusPath})
                QVERIFY(fixture.http.answer(path, HttpErrorCode::CannotConnect));
            ModelFixture::turn();
            fixture.clock.advance(0ms);
            QVERIFY(fixture.http.answer(InfoPath, HttpErrorCode::CannotConnect)); // resolved anew
        }
        QVERIFY(!fixture.model.state().isReachable);
        QCOMPARE(fixture.model.selected()->name(), u"Known"_s);
        QCOMPARE(fixture.status(), status);
        fixture.model.playback()->send(PlaybackCommand::stop());
        fixture.http.answer(StatusPath, HttpErrorCode::CannotConnect);
        fixture.http.answer(PlaybackPath, HttpErrorCode::CannotConnect);
        QCOMPARE(fixture.model.state().status.kind, StatusMessage::Kind::Failure);
        fixture.clock.advance(2s);
        QSignalSpy changes(&fixture.model, &OmbraMacModel::stateChanged);
        fixture.http.answer(PlaybackPath, "", 503);
        QVERIFY(fixture.model.state().isReachable);
        QCOMPARE(fixture.status(), u"Connected to Known"_s); // the failure goes with its cause
        QVERIFY(!changes.isEmpty());
    }

    void anotherTvRestartsTheCycleFromNothing() {
        CycleFixture fixture;
        fixture.select(FirstTv);
        fixture.finishFirstPass(false);
        fixture.clock.advance(2s);
        QCOMPARE(fixture.http.waiting(), 1u);
        fixture.model.selectDevice(OtherTv);
        QCOMPARE(fixture.http.waiting(), 0u); // the old pass is cancelled at once
        QCOMPARE(fixture.pairing(), PairingState());
        QVERIFY(fixture.model.library()->isLibraryLoadInProgress());
        QCOMPARE(fixture.status(), u"Loading library from Other..."_s);
        fixture.http.takePaths();
        ModelFixture::turn();
        QCOMPARE(fixture.http.takePaths(), QStringList(FilesPath));
        QVERIFY(fixture.http.sent.last().url.startsWith("http://other.local:8080/"));
        QCOMPARE(fixture.settings.texts.value(u"ombra.selectedDeviceKey"_s), u"other.local:8080"_s);
    }

    void aTvWithoutAValidAddressIsNotWaitedFor() {
        CycleFixture fixture;
        fixture.select(tvNamed(u"TV"_s, u"tv box.local"_s));
        QVERIFY(fixture.http.paths.isEmpty());
        QVERIFY(!fixture.model.state().isLibraryLoading);
    }

    void selectingTheSameTvKeepsEverything() {
        CycleFixture fixture;
        fixture.select(FirstTv);
        fixture.finishFirstPass(false);
        const PairingState pairing = fixture.pairing();
        TVEndpoint renamed = FirstTv;
        renamed.name = u"Renamed"_s;
        fixture.model.selectDevice(renamed);
        QCOMPARE(fixture.status(), u"Connected to Renamed"_s);
        QCOMPARE(fixture.model.selected()->name(), u"Renamed"_s);
        QCOMPARE(fixture.pairing(), pairing);
        QVERIFY(!fixture.model.library()->isLibraryLoadInProgress());
    }

    void picturesAreAskedForWithTheNewestToken() {
        CycleFixture fixture;
        fixture.select(FirstTv);
        const auto before = fixture.model.state().thumbnails;
        const QSignalSpy changes(&fixture.model, &OmbraMacModel::stateChanged);
        fixture.http.answer(FilesPath, Empty, 200,
                            {{"X-Quiv-Auth-Token", "t0k"}, {"X-Quiv-Auth-Expires-In", "600"}});
        QVERIFY(!changes.isEmpty());
        const QueryItems identity = fixture.model.state().thumbnails->identity;
        QCOMPARE(identity, before->identity + QueryItems({{u"authToken"_s, u"t0k"_s}}));
    }

    void aTvThatIsFoundAgainIsAskedAtOnce() {
        CycleFixture fixture;
        fixture.browser.services.insert(u"TV"_s, serviceAt(u"TV"_s, {10, 0, 0, 1}, 80));
        fixture.model.appear();
        fixture.clock.advance(2s);
        for (int times = 0; times < 2; ++times) {
            fixture.browser.announce(fixture.browser.services.value(u"TV"_s));
            fixture.clock.advance(0ms);
            fixture.http.answer(InfoPath, "{}");
            ModelFixture::turn();
            if (times == 0)
                fixture.finishFirstPass(true);
        }
        QCOMPARE(fixture.http.takePaths(), QStringList({InfoPath, PlaybackPath}));
    }

    void aChangeOfTheNetworkBeginsThePassAnewOnNewConnections() {
        CycleFixture fixture;
        fixture.model.networkChanged(); // no cycle runs
        fixture.select(FirstTv);
        fixture.model.networkChanged(); // while a first pass waits
        QCOMPARE(fixture.http.takePaths(), QStringList({FilesPath, FilesPath}));
        QCOMPARE(fixture.http.waiting(), 1u);
        fixture.finishFirstPass(true);
        for (int state = 0; state < 2; ++state) { // in the pause, and while a later pass waits
            fixture.model.networkChanged();
            QCOMPARE(fixture.http.takePaths(), QStringList(PlaybackPath));
            QCOMPARE(fixture.http.waiting(), 1u);
        }
        QCOMPARE(fixture.http.drops, 4);
        fixture.model.disappear();
        fixture.model.networkChanged();
        QCOMPARE(fixture.http.waiting(), 0u);
    }

    void aHiddenWindowAsksNothing() {
        CycleFixture fixture;
        fixture.select(FirstTv);
        fixture.model.disappear();
        QCOMPARE(fixture.http.waiting(), 0u);
        fixture.http.takePaths();
        ModelFixture::turn();
        fixture.clock.advance(1min);
        QVERIFY(fixture.http.paths.isEmpty());
    }

    void endingAtAnyPointOfACycleIsHarmless() {
        for (int steps = 0; steps < 7; ++steps) {
            auto fixture = std::make_unique<CycleFixture>();
            fixture->select(FirstTv);
            if (steps > 0)
                fixture->http.answer(FilesPath, Empty); // ends while it is decoded
            if (steps > 1)
                QTRY_COMPARE(fixture->http.waiting(), 1u);
            if (steps > 2)
                fixture->http.answer(PlaybackPath, Idle);
            if (steps > 3)
                fixture->http.answer(MoveStatusPath, NoMove);
            if (steps > 4)
                fixture->answerStatus(true); // ends while it pauses
            if (steps > 5)
                fixture->clock.advance(2s);
            fixture.reset();
            QVERIFY(awaitBackground(std::chrono::seconds(10)));
            ModelFixture::turn();
        }
    }
};

static const quiv::TestCase<ModelTest> registered;
#include "model_test.moc"
