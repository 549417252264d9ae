#include "support/model_fixture.h"
#include "support/test_main.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace quiv;

namespace {

const QString MovePath = u"api/files/move"_s;

MoveStatusResponse report(const QString& state, std::int64_t updatedAtMs = 1) {
    MoveStatusResponse response;
    response.state = state;
    response.fileName = u"a.mkv"_s;
    response.message = u"The TV's words."_s;
    response.updatedAtMs = updatedAtMs;
    return response;
}

const MoveState Moving{true, 0.5, 1000, u"a.mkv"_s};

} // namespace

class StorageMoveTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void progressStaysWithinItsBounds_data() {
        QTest::addColumn<std::optional<double>>("percent");
        QTest::addColumn<std::int64_t>("moved");
        QTest::addColumn<std::int64_t>("total");
        QTest::addColumn<QString>("message");
        using Percent = std::optional<double>;
        const auto row = [](const char* name, Percent percent, std::int64_t moved,
                            std::int64_t total, const char* shown) {
            QTest::newRow(name) << percent << moved << total
                                << u"Moving a.mkv... "_s + QLatin1String(shown);
        };
        row("percent", 42.9, 0, 0, "42%");
        row("too much", 150, 0, 0, "100%");
        row("less than nothing", -3, 0, 0, "0%");
        row("by bytes", std::nullopt, 3, 4, "75%");
        row("without a total", std::nullopt, 3, 0, "0%");
        row("more than the total", std::nullopt, 9, 4, "100%");
    }
    void progressStaysWithinItsBounds() {
        QFETCH(std::optional<double>, percent);
        QFETCH(std::int64_t, moved);
        QFETCH(std::int64_t, total);
        QFETCH(QString, message);
        MoveStatusResponse moving = report(u"moving"_s);
        moving.progressPercent = percent;
        moving.movedBytes = moved;
        moving.totalBytes = total;
        const MoveStep step = moveStep({}, moving);
        QVERIFY(step.state.isMovingFile);
        QVERIFY(step.state.moveProgress >= 0 && step.state.moveProgress <= 1);
        QCOMPARE(step.statusMessage, message);
    }

    void anUnknownSpeedLeavesTheLast() {
        MoveStatusResponse moving = report(u"MOVING"_s);
        for (const std::optional<std::int64_t> speed : {std::optional<std::int64_t>(), {0}, {-4}}) {
            moving.speedBytesPerSec = speed;
            QCOMPARE(moveStep(Moving, moving).state.moveSpeedBytesPerSecond, 1000);
        }
        moving.speedBytesPerSec = 7;
        QCOMPARE(moveStep(Moving, moving).state.moveSpeedBytesPerSecond, 7);
    }

    void movesEndAsTheTvSays() {
        const MoveStep completed = moveStep(Moving, report(u"Completed"_s));
        QCOMPARE(completed.state, (MoveState{false, 1, 0, u"a.mkv"_s}));
        QCOMPARE(completed.statusMessage, u"The TV's words."_s);
        QVERIFY(completed.hasMovedFile);
        QVERIFY(!moveStep({}, report(u"COMPLETED"_s)).hasMovedFile);

        const MoveStep failed = moveStep(Moving, report(u"FAILED"_s));
        QCOMPARE(failed.state, (MoveState{false, 0, 0, u"a.mkv"_s}));
        QVERIFY(failed.statusMessage && !failed.hasMovedFile);

        const MoveStep idle = moveStep(Moving, report(u"IDLE"_s));
        QCOMPARE(idle.state, MoveState());
        QVERIFY(!idle.statusMessage);
        const MoveState finished{false, 1, 0, u"a.mkv"_s};
        QCOMPARE(moveStep(finished, report(u"?"_s)).state, finished);
    }

    void aReportToldAgainChangesNothing() {
        ModelFixture fixture;
        fixture.selectPaired(FirstTv);
        StorageMove& move = *fixture.model.storageMove();
        move.applyMoveStatus(report(u"MOVING"_s));
        move.applyMoveStatus(report(u"COMPLETED"_s, 2));
        QCOMPARE(fixture.takeTargets(FilesPath).size(), 1); // shows the new storage
        fixture.model.status()->post(u"Something else"_s);
        move.applyMoveStatus(report(u"completed"_s, 2));
        QCOMPARE(fixture.status(), u"Something else"_s);
        fixture.model.selectDevice(OtherTv);
        QCOMPARE(move.state(), MoveState());
        move.applyMoveStatus(report(u"completed"_s, 2)); // the other TV may say so too
        QCOMPARE(move.state().moveProgress, 1);
    }

    void aMoveIsStartedAndReadAtOnce() {
        ModelFixture fixture;
        fixture.model.selectDevice(FirstTv); // moves ask for no pairing
        StorageMove& move = *fixture.model.storageMove();
        move.startMove(u"a.mkv"_s, u"attic"_s);
        QVERIFY(fixture.http.sent.isEmpty());
        move.startMove(u"a b.mkv"_s, u"usb"_s);
        QCOMPARE(fixture.takeTargets(MovePath),
                 QStringList(u"POST api/files/move?name=a%20b.mkv&target=usb"_s));
        const QSet<FileRequest> asked{
            {FileRequest::Kind::Move, endpointKey(FirstTv), u"a b.mkv"_s}};
        QCOMPARE(fixture.model.state().pendingFiles, asked);
        fixture.http.answer(MovePath, QByteArray());
        QCOMPARE(fixture.status(), u"Move started for a b.mkv"_s);
        fixture.http.answer(MoveStatusPath, HttpErrorCode::TimedOut);
        QVERIFY(fixture.status().startsWith(u"Failed to fetch move status: "_s));
        QVERIFY(fixture.model.state().pendingFiles.isEmpty());
    }

    void aRefusedMoveIsSaid() {
        ModelFixture fixture;
        fixture.selectPaired(FirstTv);
        StorageMove& move = *fixture.model.storageMove();
        move.startMove(u"a.mkv"_s, u"INTERNAL"_s);
        fixture.http.answer(MovePath, R"({"error":"ignored"})", 409);
        QCOMPARE(fixture.status(), u"Move failed to start: Move failed to start (HTTP 409)"_s);
        QVERIFY(!fixture.pairing().requiresControlPairing);
        move.startMove(u"a.mkv"_s, u"INTERNAL"_s);
        fixture.http.answer(MovePath, QByteArray(), 401);
        QVERIFY(fixture.pairing().requiresControlPairing);
        move.startMove(u"a.mkv"_s, u"INTERNAL"_s);
        fixture.http.answer(MovePath, HttpErrorCode::CannotConnect);
        QCOMPARE(fixture.status(), u"Move failed to start: "_s +
                                       HttpError(HttpErrorCode::CannotConnect).description());
        QCOMPARE(fixture.http.waiting(), 0u);
    }
};

static const quiv::TestCase<StorageMoveTest> registered;
#include "storage_move_test.moc"
