#include "support/model_fixture.h"

#include <QTest>

using namespace quiv;

namespace {

const QString MovePath = QStringLiteral("api/files/move");
const TVEndpoint Tv = tvNamed(QStringLiteral("TV"), QStringLiteral("tv.local"));
const TVEndpoint OtherTv = tvNamed(QStringLiteral("Other"), QStringLiteral("other.local"));

MoveStatusResponse report(const QString& state, std::int64_t updatedAtMs = 1) {
    MoveStatusResponse response;
    response.state = state;
    response.fileName = QStringLiteral("a.mkv");
    response.message = QStringLiteral("The TV's words.");
    response.updatedAtMs = updatedAtMs;
    return response;
}

const MoveState Moving{true, 0.5, 1000, QStringLiteral("a.mkv")};

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
                                << QStringLiteral("Moving a.mkv... ") + QLatin1String(shown);
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
        MoveStatusResponse moving = report(QStringLiteral("moving"));
        moving.progressPercent = percent;
        moving.movedBytes = moved;
        moving.totalBytes = total;
        const MoveStep step = moveStep({}, moving);
        QVERIFY(step.state.isMovingFile);
        QVERIFY(step.state.moveProgress >= 0 && step.state.moveProgress <= 1);
        QCOMPARE(step.statusMessage, message);
    }

    void anUnknownSpeedLeavesTheLast() {
        MoveStatusResponse moving = report(QStringLiteral("MOVING"));
        for (const std::optional<std::int64_t> speed : {std::optional<std::int64_t>(), {0}, {-4}}) {
            moving.speedBytesPerSec = speed;
            QCOMPARE(moveStep(Moving, moving).state.moveSpeedBytesPerSecond, 1000);
        }
        moving.speedBytesPerSec = 7;
        QCOMPARE(moveStep(Moving, moving).state.moveSpeedBytesPerSecond, 7);
    }

    void movesEndAsTheTvSays() {
        const MoveStep completed = moveStep(Moving, report(QStringLiteral("Completed")));
        QCOMPARE(completed.state, (MoveState{false, 1, 0, QStringLiteral("a.mkv")}));
        QCOMPARE(completed.statusMessage, QStringLiteral("The TV's words."));
        QVERIFY(completed.hasMovedFile);
        QVERIFY(!moveStep({}, report(QStringLiteral("COMPLETED"))).hasMovedFile);

        const MoveStep failed = moveStep(Moving, report(QStringLiteral("FAILED")));
        QCOMPARE(failed.state, (MoveState{false, 0, 0, QStringLiteral("a.mkv")}));
        QVERIFY(failed.statusMessage && !failed.hasMovedFile);

        const MoveStep idle = moveStep(Moving, report(QStringLiteral("IDLE")));
        QCOMPARE(idle.state, MoveState());
        QVERIFY(!idle.statusMessage);
        const MoveState finished{false, 1, 0, QStringLiteral("a.mkv")};
        QCOMPARE(moveStep(finished, report(QStringLiteral("?"))).state, finished);
    }

    void aReportToldAgainChangesNothing() {
        ModelFixture fixture;
        fixture.selectPaired(Tv);
        StorageMove& move = *fixture.model.storageMove();
        move.applyMoveStatus(report(QStringLiteral("MOVING")));
        move.applyMoveStatus(report(QStringLiteral("COMPLETED"), 2));
        QCOMPARE(fixture.takeTargets(FilesPath).size(), 1); // shows the new storage
        fixture.model.status()->post(QStringLiteral("Something else"));
        move.applyMoveStatus(report(QStringLiteral("completed"), 2));
        QCOMPARE(fixture.status(), QStringLiteral("Something else"));
        fixture.model.selectDevice(OtherTv);
        QCOMPARE(move.state(), MoveState());
        move.applyMoveStatus(report(QStringLiteral("completed"), 2)); // the other TV may say so too
        QCOMPARE(move.state().moveProgress, 1);
    }

    void aMoveIsStartedAndReadAtOnce() {
        ModelFixture fixture;
        fixture.model.selectDevice(Tv); // moves ask for no pairing
        StorageMove& move = *fixture.model.storageMove();
        move.startMove(QStringLiteral("a.mkv"), QStringLiteral("attic"));
        QVERIFY(fixture.http.sent.isEmpty());
        move.startMove(QStringLiteral("a b.mkv"), QStringLiteral("usb"));
        QCOMPARE(fixture.takeTargets(MovePath),
                 QStringList(QStringLiteral("POST api/files/move?name=a%20b.mkv&target=usb")));
        fixture.http.answer(MovePath, QByteArray());
        QCOMPARE(fixture.status(), QStringLiteral("Move started for a b.mkv"));
        fixture.http.answer(MoveStatusPath, HttpErrorCode::TimedOut);
        QVERIFY(fixture.status().startsWith(QStringLiteral("Failed to fetch move status: ")));
    }

    void aRefusedMoveIsSaid() {
        ModelFixture fixture;
        fixture.selectPaired(Tv);
        StorageMove& move = *fixture.model.storageMove();
        move.startMove(QStringLiteral("a.mkv"), QStringLiteral("INTERNAL"));
        fixture.http.answer(MovePath, R"({"error":"ignored"})", 409);
        QCOMPARE(fixture.status(),
                 QStringLiteral("Move failed to start: Move failed to start (HTTP 409)"));
        QVERIFY(!fixture.pairing().requiresControlPairing);
        move.startMove(QStringLiteral("a.mkv"), QStringLiteral("INTERNAL"));
        fixture.http.answer(MovePath, QByteArray(), 401);
        QVERIFY(fixture.pairing().requiresControlPairing);
        move.startMove(QStringLiteral("a.mkv"), QStringLiteral("INTERNAL"));
        fixture.http.answer(MovePath, HttpErrorCode::CannotConnect);
        QCOMPARE(fixture.status(), QStringLiteral("Move failed to start: ") +
                                       HttpError(HttpErrorCode::CannotConnect).description());
        QCOMPARE(fixture.http.waiting(), 0u);
    }
};

QTEST_GUILESS_MAIN(StorageMoveTest)
#include "storage_move_test.moc"
