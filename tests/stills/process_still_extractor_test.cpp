#include <QTest> // first, or moc stumbles over the library's concepts

#include "platform/stills/process_still_extractor.h"

#include <QFile>
#include <QTemporaryDir>

#include <cerrno>
#include <csignal>

using namespace Qt::StringLiterals;
using namespace quiv;
using namespace std::chrono_literals;

namespace {

const QByteArray jpeg("\xff\xd8 a still");

struct Outcome {
    std::optional<QByteArray> still;
    int count = 0;
};

Task<> ask(StillExtractor& extractor, QString path, Outcome* outcome) {
    std::optional<QByteArray> still = co_await extractor.makeUploadThumbnail(std::move(path));
    outcome->still = std::move(still);
    ++outcome->count;
}

// Also not as one that ended and was not waited for.
bool isGone(pid_t process) {
    return kill(process, 0) == -1 && errno == ESRCH;
}

} // namespace

// The adapter over programs that behave as decoders do on a bad day.
class ProcessStillExtractorTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void onlyAStillThatIsWholeAndInTimeCounts_data() {
        QTest::addColumn<QByteArray>("script");
        QTest::addColumn<bool>("isStill");
        const QByteArray print("printf '\\377\\330 a still'; ");
        QTest::newRow("a still") << print << true;
        QTest::newRow("a still and complaints") << print + "echo hm >&2" << true;
        QTest::newRow("not a picture") << QByteArray("echo hello") << false;
        QTest::newRow("nothing") << QByteArray("exit 0") << false;
        QTest::newRow("failure") << print + "exit 1" << false;
        QTest::newRow("crash") << print + "kill -SEGV $$" << false;
        QTest::newRow("endless") << print + "exec cat /dev/zero" << false;
        QTest::newRow("too large") << print + "head -c 4194304 /dev/zero" << false;
        QTest::newRow("reads its input") << QByteArray("read line || ") + print << true;
    }
    void onlyAStillThatIsWholeAndInTimeCounts() {
        QFETCH(QByteArray, script);
        QFETCH(bool, isStill);
        ProcessStillExtractor extractor(program(script));
        Outcome outcome;
        const Task<> task = ask(extractor, u"video"_s, &outcome);
        QCOMPARE(outcome.count, 0); // from the event loop only
        QTRY_COMPARE(outcome.count, 1);
        QCOMPARE(outcome.still, isStill ? std::optional(jpeg) : std::nullopt);
    }

    void aProgramOrPathThatIsNoneGivesNoStill() {
        ProcessStillExtractor missing(m_folder->filePath(u"missing"_s));
        ProcessStillExtractor present(program("printf '\\377\\330 a still'"));
        Outcome withoutProgram, withoutPath, withZero;
        const Task<> first = ask(missing, u"video"_s, &withoutProgram);
        const Task<> second = ask(present, QString(), &withoutPath);
        const Task<> third = ask(present, u"a"_s + QChar::Null, &withZero);
        QCOMPARE(withoutProgram.count + withoutPath.count + withZero.count, 0);
        QTRY_COMPARE(withoutProgram.count + withoutPath.count + withZero.count, 3);
        QVERIFY(!withoutProgram.still && !withoutPath.still && !withZero.still);
    }

    void namesReachTheProgramAsTheyAre() {
        const QString name = u"-x 'a\n\"\u00e9\u4e2d$HOME*"_s;
        ProcessStillExtractor extractor(program("printf '\\377\\330%s' \"$#$1\""));
        Outcome outcome;
        const Task<> task = ask(extractor, name, &outcome);
        QTRY_COMPARE(outcome.count, 1);
        QCOMPARE(outcome.still, "\xff\xd8"
                                "1" +
                                    name.toUtf8());
    }

    void twoRunAtOnceInTheOrderOfTheRequests() {
        ProcessStillExtractor extractor(
            program("echo + $1 >>log; sleep 0.05; echo - >>log; printf '\\377\\330'"));
        Outcome outcome;
        std::vector<Task<>> tasks;
        for (int i = 0; i < 8; ++i)
            tasks.push_back(ask(extractor, QString::number(i), &outcome));
        QTRY_COMPARE(outcome.count, 8);
        int running = 0, started = 0;
        for (const QByteArray& line : log()) {
            running += line.startsWith('+') ? 1 : -1;
            QVERIFY(running <= 2);
            if (line.startsWith('+')) // two that start together may write in either order
                QVERIFY(std::abs(line.mid(2).toInt() - started++) <= 1);
        }
        QCOMPARE(started, 8);
        QVERIFY(log().at(1).startsWith('+')); // really two at once
    }

    void aDroppedTaskEndsItsProcessAndFreesItsPlace() {
        ProcessStillExtractor extractor(program("echo $$ $1 >>log; exec sleep 1000"));
        Outcome outcome;
        std::vector<Task<>> tasks;
        for (int i = 0; i < 500; ++i)
            tasks.push_back(ask(extractor, QString::number(i), &outcome));
        QTRY_COMPARE(log().size(), 2);
        tasks[2].cancel(); // leaves the queue
        tasks[0].cancel();
        QTRY_COMPARE(log().size(), 3);
        QTRY_VERIFY(isGone(processOf("0")));
        QVERIFY(!isGone(processOf("1")) && !isGone(processOf("3")));
        tasks.clear();
        QTRY_VERIFY(isGone(processOf("1")) && isGone(processOf("3")));
        QCOMPARE(log().size(), 3); // none of the others was begun
        QCOMPARE(outcome.count, 0);
    }

    void theLimitCountsFromTheStartOfEachProcess() {
        ProcessStillExtractor extractor(
            program("echo $$ $1 >>log; [ $1 = slow ] && exec sleep 1000; printf '\\377\\330'"), 1s);
        Outcome slow, other, waiting;
        const Task<> first = ask(extractor, u"slow"_s, &slow);
        const Task<> second = ask(extractor, u"slow"_s, &other);
        const Task<> third = ask(extractor, u"quick"_s, &waiting);
        QTRY_COMPARE(waiting.count, 1);
        QVERIFY(waiting.still);
        QTRY_COMPARE(slow.count + other.count, 2);
        QVERIFY(!slow.still && !other.still);
        QTRY_VERIFY(isGone(processOf("slow")));
    }

    void anExtractorThatGoesAnswersEveryone() {
        auto extractor =
            std::make_unique<ProcessStillExtractor>(program("echo $$ $1 >>log; exec sleep 1000"));
        Outcome outcome, dropped;
        std::vector<Task<>> tasks;
        for (int i = 0; i < 5; ++i)
            tasks.push_back(ask(*extractor, QString::number(i), &outcome));
        Task<> droppedTask = ask(*extractor, u"5"_s, &dropped);
        QTRY_COMPARE(log().size(), 2);
        extractor.reset();
        droppedTask.cancel();
        QCOMPARE(outcome.count, 0); // from the event loop only
        QTRY_COMPARE(outcome.count, 5);
        QVERIFY(!outcome.still);
        QTRY_VERIFY(isGone(processOf("0")) && isGone(processOf("1")));
        QCOMPARE(log().size(), 2);
        QCOMPARE(dropped.count, 0);
    }

private:
    // A shell script, running in the folder of its log.
    QString program(const QByteArray& script) {
        QFile file(m_folder->filePath(u"program"_s));
        if (file.open(QIODevice::WriteOnly))
            file.write("#!/bin/sh\ncd '" + m_folder->path().toUtf8() + "'\n" + script + '\n');
        file.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
        return file.fileName();
    }
    // Whole lines only.
    QList<QByteArray> log() const {
        QFile file(m_folder->filePath(u"log"_s));
        if (!file.open(QIODevice::ReadOnly))
            return {};
        auto lines = file.readAll().split('\n');
        lines.removeLast();
        return lines;
    }
    pid_t processOf(const QByteArray& name) const {
        for (const QByteArray& line : log()) {
            if (line.endsWith(' ' + name))
                return line.split(' ').first().toInt();
        }
        qFatal("%s has not started", name.constData());
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

QTEST_GUILESS_MAIN(ProcessStillExtractorTest)
#include "process_still_extractor_test.moc"
