#include "net/reachability.h"
#include "support/test_main.h"

#include <QTest>

using namespace quiv;

class ReachabilityTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void twoSilentPassesInARowAreTooMany() {
        ContactRecord record = afterPass(afterSilence({}));
        QVERIFY(record.isReachable());
        QVERIFY(!afterPass(afterSilence(record)).isReachable());
        QVERIFY(afterPass(afterPass(record)).silentRequests == 1);

        // One answer in the pass, or since, is enough.
        QVERIFY(afterPass(afterSilence(afterAnswer(record))).isReachable());
        record = afterPass(afterAnswer(afterSilence(record)));
        QVERIFY(afterPass(afterSilence(record)).isReachable());
        QVERIFY(afterAnswer({.silentRequests = 50, .silentPasses = 9}).isReachable());
    }

    void silenceAsksForAnAddressAtGrowingIntervals() {
        ContactRecord record;
        QList<int> counts;
        for (int request = 1; request <= 30; ++request) {
            record = afterSilence(record);
            if (record.isTimeToResolve())
                counts.append(request);
        }
        QCOMPARE(counts, QList({3, 6, 12, 24}));
    }

    void onlySilenceCounts() {
        for (const auto code : {HttpErrorCode::TimedOut, HttpErrorCode::CannotFindHost,
                                HttpErrorCode::CannotConnect, HttpErrorCode::ConnectionLost})
            QVERIFY(isWithoutAnswer(code));
        for (const auto code : {HttpErrorCode::Cancelled, HttpErrorCode::BadServerResponse,
                                HttpErrorCode::CannotReadFile, HttpErrorCode::ReplyTooLarge})
            QVERIFY(!isWithoutAnswer(code));
    }
};

static const quiv::TestCase<ReachabilityTest> registered;
#include "reachability_test.moc"
