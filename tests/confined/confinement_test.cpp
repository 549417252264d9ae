#include "confined/confinement.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <sys/socket.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

// The confinement of the helper programs, tried from inside a process that is as confined.
class ConfinementTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        if (quiv::IsSanitized)
            QSKIP("a sanitizer needs the calls that the filter refuses");
        QCOMPARE(::socketpair(AF_UNIX, SOCK_STREAM, 0, m_sockets), 0); // inherited by all programs
    }
    void cleanupTestCase() {
        for (const int socket : m_sockets)
            ::close(socket);
    }

    void nothingIsLeftToDo() {
        QCOMPARE(attempts(u"confined"_s), QList<QByteArray>());
        QFile file(path());
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), "the user's");
        QVERIFY(!QFile::exists(path() + u".new"_s));
    }

    void withoutItTheAttemptsSucceed() {
        const QList<QByteArray> succeeded = attempts(u"free"_s);
        for (const char* what : {"descriptor", "open", "create", "ftruncate", "truncate", "rename",
                                 "socket", "local socket", "dup", "kill", "fork", "vfork", "clone"})
            QVERIFY2(succeeded.contains(what), what);
    }

private:
    QString path() const { return m_folder.filePath(u"file"_s); }

    // What was not refused.
    QList<QByteArray> attempts(const QString& mode) const {
        QFile file(path());
        if (!file.open(QIODevice::WriteOnly) || file.write("the user's") < 0)
            return {"no file"};
        file.close();
        QProcess program;
        program.start(QCoreApplication::applicationDirPath() + u"/escape_attempts"_s,
                      {mode, path()});
        if (!program.waitForFinished() || program.exitStatus() != QProcess::NormalExit ||
            program.exitCode() != 0)
            return {"no answer"};
        QList<QByteArray> lines = program.readAllStandardError().split('\n');
        lines.removeLast();
        return lines;
    }

    QTemporaryDir m_folder;
    int m_sockets[2] = {-1, -1};
};

QTEST_GUILESS_MAIN(ConfinementTest)
#include "confinement_test.moc"
