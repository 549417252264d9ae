#include "simulator/simulator_process.h"

#include <httplib.h>

#include <QDir>
#include <QFile>
#include <QScopeGuard>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace quiv::simulator;

// How the program starts and ends.
class TestSimulatorProgram : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void badOptionsEndItWithCodeTwo_data();
    void badOptionsEndItWithCodeTwo();
    void aTakenPortEndsIt();
    void killingItFreesItsPortForTheNext();
    void leavesAFolderThatHoldsAnythingAlone();
    void goesOnWithoutSamplesWhenFfmpegIsMissing();

private:
    int exitCodeWith(const QStringList& arguments);
};

int TestSimulatorProgram::exitCodeWith(const QStringList& arguments) {
    SimulatorProcess tv;
    return tv.start(arguments) ? -1 : tv.exitCode();
}

void TestSimulatorProgram::badOptionsEndItWithCodeTwo_data() {
    QTest::addColumn<QStringList>("arguments");
    const auto row = [](const char* arguments) {
        QTest::newRow(arguments) << QString::fromLatin1(arguments).split(u' ');
    };
    row("--no-such-option");
    row("something");
    row("--port 65536");
    row("--code 12x");
    row("--generate many");
    row("--announce-with shouting");
    row("--lockout-seconds 0");
}

void TestSimulatorProgram::badOptionsEndItWithCodeTwo() {
    QFETCH(QStringList, arguments);
    QCOMPARE(exitCodeWith(arguments), 2);
}

void TestSimulatorProgram::aTakenPortEndsIt() {
    SimulatorProcess first;
    QVERIFY(first.start());
    QCOMPARE(exitCodeWith({u"--port"_s, QString::number(first.port())}), 1);
}

void TestSimulatorProgram::killingItFreesItsPortForTheNext() {
    SimulatorProcess tv;
    QVERIFY(tv.start());
    httplib::Client client("127.0.0.1", tv.port());
    QVERIFY(client.Get("/api/info"));
    const quint16 port = tv.port();
    tv.kill();
    QVERIFY(!tv.isRunning());
    QVERIFY(!client.Get("/api/info"));
    QVERIFY(tv.start({u"--port"_s, QString::number(port)}));
    QCOMPARE(tv.port(), port);
    QVERIFY(client.Get("/api/info"));
}

void TestSimulatorProgram::leavesAFolderThatHoldsAnythingAlone() {
    SimulatorProcess tv;
    tv.useSampleMedia();
    QFile file(tv.mediaFolder() + u"/mine.mp4"_s);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(tv.start());
    QCOMPARE(QDir(tv.mediaFolder()).entryList(QDir::Files), QStringList(u"mine.mp4"_s));
}

void TestSimulatorProgram::goesOnWithoutSamplesWhenFfmpegIsMissing() {
    const QByteArray path = qgetenv("PATH");
    const auto restore = qScopeGuard([&] { qputenv("PATH", path); });
    qputenv("PATH", "/nowhere");
    SimulatorProcess tv;
    tv.useSampleMedia();
    QVERIFY(tv.start());
    QVERIFY(QDir(tv.mediaFolder()).isEmpty());
}

QTEST_GUILESS_MAIN(TestSimulatorProgram)
#include "simulator_program_test.moc"
