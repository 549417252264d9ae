#include "app/command_line.h"
#include "support/test_main.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace quiv;

class CommandLineTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theFirstArgumentThatIsNotAboutRunningDecides() {
        using enum CommandLine::Wish;
        const CommandLine run{Run};
        QCOMPARE(parseCommandLine({}), run);
        QCOMPARE(parseCommandLine({u"-session"_s, u"--help"_s, u"--platform"_s, u"xcb"_s}), run);
        QCOMPARE(parseCommandLine({u"-display"_s, u":0"_s, u"-h"_s, u"--no"_s}).wish, Help);
        QCOMPARE(parseCommandLine({u"--version"_s, u"--help"_s}).wish, Version);
        const CommandLine unknown{Refusal, u"Unknown option: --no"_s};
        QCOMPARE(parseCommandLine({u"--no"_s, u"--help"_s}), unknown);
        const CommandLine incomplete{Refusal, u"A value is missing after --platform"_s};
        QCOMPARE(parseCommandLine({u"--platform"_s}), incomplete);
        const CommandLine files =
            parseCommandLine({u"a.mkv"_s, u"--separate"_s, u"--"_s, u"-b.srt"_s});
        QCOMPARE(files.wish, Run);
        QCOMPARE(files.files, QStringList({u"a.mkv"_s, u"-b.srt"_s}));
        QVERIFY(files.isSeparate);
    }
};

static const quiv::TestCase<CommandLineTest> registered;
#include "command_line_test.moc"
