#include "platform/async/background.h"
#include "platform/async/semaphore.h"
#include "platform/async/task.h"
#include "platform/async/task_set.h"
#include "platform/clock.h"
#include "support/fake_clock.h"

#include <QTest>

#include <stdexcept>

using namespace Qt::StringLiterals;
using namespace quiv;
using namespace std::chrono_literals;

namespace {

// Says in a log when it goes, as a coroutine's locals do.
struct Witness {
    QStringList* log;
    QString name;
    ~Witness() { log->append(name); }
};

Task<int> valueAfter(Clock& clock, int value) {
    co_await sleepFor(clock, 10ms);
    co_return value;
}

Task<int> failAfter(Clock& clock) {
    co_await sleepFor(clock, 10ms);
    throw std::runtime_error("broken");
}

Task<> nested(Clock& clock, QStringList* log) {
    const Witness witness{log, u"locals gone"_s};
    const int one = co_await valueAfter(clock, 1);
    log->append(QString::number(one));
    try {
        co_await failAfter(clock);
    } catch (const std::runtime_error& error) {
        log->append(QString::fromUtf8(error.what()));
    }
    log->append(QString::number(co_await valueAfter(clock, 2)));
}

Task<> callThenSleep(Clock& clock, std::function<void()> call, QStringList* log) {
    const Witness witness{log, u"locals gone"_s};
    call();
    log->append(u"ran on"_s);
    co_await sleepFor(clock, 10ms);
    log->append(u"never"_s);
}

Task<> sleepThenCall(Clock& clock, std::function<void()> call, QStringList* log) {
    co_await sleepFor(clock, 10ms);
    co_await callThenSleep(clock, std::move(call), log);
    log->append(u"never"_s);
}

Task<> computeInBackground(QStringList* log) {
    const auto mainThread = QThread::currentThread();
    auto work = inBackground([mainThread] { return QThread::currentThread() != mainThread; });
    const bool wasElsewhere = co_await std::move(work);
    log->append(wasElsewhere && QThread::currentThread() == mainThread ? u"there and back"_s
                                                                       : u"wrong thread"_s);
    auto failing = inBackground([]() -> int { throw std::runtime_error("worker broke"); });
    try {
        co_await std::move(failing);
    } catch (const std::runtime_error& error) {
        log->append(QString::fromUtf8(error.what()));
    }
}

Task<> visit(Semaphore& semaphore, Clock& clock, QStringList* log, QString name) {
    const Semaphore::Permit permit = co_await semaphore.acquire();
    log->append(name);
    co_await sleepFor(clock, 10ms);
}

} // namespace

class TaskTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void valuesAndExceptionsPassThroughNestedTasks() {
        FakeClock clock;
        QStringList log;
        Task<> task = nested(clock, &log);
        task = nested(clock, &log); // cancels the first
        QCOMPARE(std::exchange(log, {}), QStringList(u"locals gone"_s));
        clock.advance(30ms);
        QCOMPARE(log, QStringList({u"1"_s, u"broken"_s, u"2"_s, u"locals gone"_s}));
        QVERIFY(task.isDone());
    }

    void destroyingCancelsAtEveryAwait() {
        for (int awaits = 0; awaits < 3; ++awaits) {
            FakeClock clock;
            QStringList log;
            Task<> task = nested(clock, &log);
            clock.advance(awaits * 10ms);
            QCOMPARE(clock.pendingTimers(), 1u);
            task.cancel();
            QCOMPARE(log.last(), u"locals gone"_s);
            QCOMPARE(clock.pendingTimers(), 0u);
            QCOMPARE(log.size(), awaits + 1);
        }
    }

    void destroyedFromItsOwnCodeItEndsAtTheNextAwait() {
        FakeClock clock;
        QStringList log;
        Task<> task;
        task = sleepThenCall(
            clock, [&task] { task.cancel(); }, &log);
        clock.advance(100ms);
        QCOMPARE(log, QStringList({u"ran on"_s, u"locals gone"_s}));
        QCOMPARE(clock.pendingTimers(), 0u);
    }

    void aSetDropsWhatIsUnderWay() {
        FakeClock clock;
        QStringList log;
        {
            TaskSet tasks;
            tasks.add(nested(clock, &log));
            clock.advance(30ms);
            tasks.add(nested(clock, &log));
        }
        QCOMPARE(log.count(u"locals gone"_s), 2);
        QCOMPARE(clock.pendingTimers(), 0u);
    }

    void backgroundWorkComesBackToTheMainThread() {
        QStringList log;
        Task<> task = computeInBackground(&log);
        QTRY_VERIFY(task.isDone());
        QCOMPARE(log, QStringList({u"there and back"_s, u"worker broke"_s}));
    }

    void droppedBackgroundWorkResumesNothing() {
        QStringList log;
        for (int round = 0; round < 50; ++round)
            Task<> task = computeInBackground(&log);
        QVERIFY(awaitBackground(std::chrono::seconds(10)));
        QCoreApplication::processEvents();
        QVERIFY(log.isEmpty());
    }

    void aSemaphoreLetsAFewInAndTheOthersInOrder() {
        FakeClock clock;
        QStringList log;
        std::vector<Task<>> tasks;
        {
            Semaphore semaphore(2);
            for (const char* name : {"a", "b", "c", "d", "e", "f"})
                tasks.push_back(visit(semaphore, clock, &log, QString::fromLatin1(name)));
        }
        const auto entered = [&] {
            QCoreApplication::processEvents();
            return log.join(QString());
        };
        QCOMPARE(entered(), u"ab"_s);
        tasks[2].cancel(); // waits
        tasks[0].cancel(); // is inside: lets d in, who goes before being there
        tasks[3].cancel();
        QCOMPARE(entered(), u"abe"_s);
        clock.advance(10ms);
        QCOMPARE(entered(), u"abef"_s);
        clock.advance(10ms);
        QVERIFY(tasks[5].isDone());
    }

    void theSystemClocksTimerFiresOnceAndNotAfterItsEnd() {
        SystemClock clock;
        int fired = 0;
        const auto kept = clock.after(1ms, [&fired] { ++fired; });
        auto dropped = clock.after(1ms, [&fired] { fired += 100; });
        dropped.reset();
        QTRY_COMPARE(fired, 1);
    }
};

QTEST_GUILESS_MAIN(TaskTest)
#include "task_test.moc"
