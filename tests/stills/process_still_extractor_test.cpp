#include <QTest> // first, or moc stumbles over the library's concepts

#include "platform/stills/process_still_extractor.h"
#include "support/outcome.h"

#include <QFile>
#include <QTemporaryDir>

#include <cerrno>
#include <csignal>
#include <list>

using namespace Qt::StringLiterals;
using namespace quiv;
using namespace std::chrono_literals;

namespace {

const QByteArray jpeg("\xff\xd8 a still");

using Still = Outcome<QByteArray>;

qsizetype doneOf(const std::list<Still>& stills) {
    return std::ranges::count_if(stills, &Still::isDone);
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
        Still still(extractor.makeUploadThumbnail(u"video"_s));
        QVERIFY(!still.isDone()); // from the event loop only
        QTRY_VERIFY(still.isDone());
        QCOMPARE(still.value(), isStill ? std::optional(jpeg) : std::nullopt);
    }

    void aProgramOrPathThatIsNoneGivesNoStill() {
        ProcessStillExtractor missing(m_folder->filePath(u"missing"_s));
        ProcessStillExtractor present(program("printf '\\377\\330 a still'"));
        std::list<Still> stills;
        stills.emplace_back(missing.makeUploadThumbnail(u"video"_s));
        stills.emplace_back(present.makeUploadThumbnail(QString()));
        stills.emplace_back(present.makeUploadThumbnail(u"a"_s + QChar::Null));
        QCOMPARE(doneOf(stills), 0);
        QTRY_COMPARE(doneOf(stills), 3);
        for (const Still& still : stills)
            QVERIFY(!still.value());
    }

    void namesReachTheProgramAsTheyAre() {
        const QString name = u"-x 'a\n\"\u00e9\u4e2d$HOME*"_s;
        ProcessStillExtractor extractor(program("printf '\\377\\330%s' \"$#$1\""));
        Still still(extractor.makeUploadThumbnail(name));
        QTRY_VERIFY(still.isDone());
        QCOMPARE(still.value(), "\xff\xd8"
                                "1" +
                                    name.toUtf8());
    }

    void twoRunAtOnceInTheOrderOfTheRequests() {
        ProcessStillExtractor extractor(
            program("echo + $1 >>log; sleep 0.05; echo - >>log; printf '\\377\\330'"));
        std::list<Still> stills;
        for (int i = 0; i < 8; ++i)
            stills.emplace_back(extractor.makeUploadThumbnail(QString::number(i)));
        QTRY_COMPARE(doneOf(stills), 8);
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
        std::list<Still> stills;
        for (int i = 0; i < 500; ++i)
            stills.emplace_back(extractor.makeUploadThumbnail(QString::number(i)));
        QTRY_COMPARE(log().size(), 2);
        std::next(stills.begin(), 2)->cancel(); // leaves the queue
        stills.front().cancel();
        QTRY_COMPARE(log().size(), 3);
        QTRY_VERIFY(isGone(processOf("0")));
        QVERIFY(!isGone(processOf("1")) && !isGone(processOf("3")));
        QCOMPARE(doneOf(stills), 0);
        stills.clear();
        QTRY_VERIFY(isGone(processOf("1")) && isGone(processOf("3")));
        QCOMPARE(log().size(), 3); // none of the others was begun
    }

    void theLimitCountsFromTheStartOfEachProcess() {
        ProcessStillExtractor extractor(
            program("echo $$ $1 >>log; [ $1 = slow ] && exec sleep 1000; printf '\\377\\330'"), 1s);
        Still slow(extractor.makeUploadThumbnail(u"slow"_s));
        Still other(extractor.makeUploadThumbnail(u"slow"_s));
        Still waiting(extractor.makeUploadThumbnail(u"quick"_s));
        QTRY_VERIFY(waiting.value());
        QTRY_VERIFY(slow.isDone() && other.isDone());
        QVERIFY(!slow.value() && !other.value());
        QTRY_VERIFY(isGone(processOf("slow")));
    }

    void anExtractorThatGoesAnswersEveryone() {
        auto extractor =
            std::make_unique<ProcessStillExtractor>(program("echo $$ $1 >>log; exec sleep 1000"));
        std::list<Still> stills;
        for (int i = 0; i < 6; ++i)
            stills.emplace_back(extractor->makeUploadThumbnail(QString::number(i)));
        QTRY_COMPARE(log().size(), 2);
        extractor.reset();
        stills.back().cancel();
        QCOMPARE(doneOf(stills), 0); // from the event loop only
        QTRY_COMPARE(doneOf(stills), 5);
        QVERIFY(!stills.front().value() && !stills.back().isDone());
        QTRY_VERIFY(isGone(processOf("0")) && isGone(processOf("1")));
        QCOMPARE(log().size(), 2);
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
