#include "platform/async/threads.h"
#include "simulator/simulator_process.h"
#include "support/real_model.h"

#include <QElapsedTimer>
#include <QFile>
#include <QStorageInfo>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;
using namespace quiv;
using quiv::simulator::SimulatorProcess;

namespace {

constexpr auto LongestAnswer = std::chrono::milliseconds(1000);
constexpr auto LongestStall = std::chrono::milliseconds(300);

void write(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    QVERIFY2(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size(),
             qPrintable(path));
}

QByteArray contentOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

// Files of the user on a disk that hangs or is slow. Runs where it may mount file systems.
class TroubledDiskTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        m_disk.start(QCoreApplication::applicationDirPath() + u"/troubled_disk"_s,
                     {m_behind.path(), m_folder.path()});
        const auto isMounted = [this] {
            return QStorageInfo(m_folder.path()).fileSystemType().startsWith("fuse");
        };
        if (!QTest::qWaitFor(
                [&] { return isMounted() || m_disk.state() == QProcess::NotRunning; }) ||
            !isMounted())
            QSKIP("file systems of programs cannot be mounted here");
        for (int byte = 0; byte < 3 << 20; ++byte)
            m_bytes.append(static_cast<char>(byte * 31 + byte / 251));
        QVERIFY2(m_tv.start(), qPrintable(m_tv.errorText()));
        write(m_tv.mediaFolder() + u"/remote.mkv"_s, m_bytes);
    }
    void init() {
        m_real = std::make_unique<RealModel>();
        m_real->dialogs.desktop.isOffered = true;
        QVERIFY(m_real->pair(m_tv.port(), m_tv.pairingCode()));
        write(m_behind.filePath(u"local.mkv"_s), m_bytes);
    }
    void cleanup() {
        endTrouble();
        m_real.reset();
        QVERIFY(awaitDiskThreads(std::chrono::seconds(10)));
    }
    void cleanupTestCase() {
        m_disk.kill(); // what hangs in it fails then
        m_disk.waitForFinished();
    }

    void nothingElseWaitsForIt_data() {
        QTest::addColumn<bool>("isUpload");
        QTest::addColumn<QString>("trouble");
        for (const char* trouble : {"stat", "open", "read", "slow"})
            QTest::addRow("upload, %s", trouble) << true << QString::fromLatin1(trouble);
        for (const char* trouble : {"stat", "create", "write", "sync", "rename", "slow"})
            QTest::addRow("download, %s", trouble) << false << QString::fromLatin1(trouble);
    }
    void nothingElseWaitsForIt() {
        QFETCH(bool, isUpload);
        QFETCH(QString, trouble);
        QElapsedTimer sinceTurn;
        qint64 longestStall = 0;
        QTimer heart;
        connect(&heart, &QTimer::timeout, &heart,
                [&] { longestStall = std::max(longestStall, sinceTurn.restart()); });
        beginTrouble(trouble);
        begin(isUpload);
        QTRY_VERIFY(isTroubled(trouble));
        sinceTurn.start();
        heart.start(10);
        QVERIFY(tvAnswersSoon());

        // It ends when the user says so, though the disk does not answer.
        QElapsedTimer sinceCancel;
        sinceCancel.start();
        if (cancel(isUpload)) {
            QTRY_VERIFY(!isBusy());
            QVERIFY2(sinceCancel.elapsed() < LongestAnswer.count(),
                     qPrintable(QString::number(sinceCancel.elapsed())));
            begin(isUpload);
        }
        QVERIFY(tvAnswersSoon());
        heart.stop();
        QVERIFY2(longestStall < LongestStall.count(), qPrintable(QString::number(longestStall)));

        // Once the disk is well again, so is what was begun.
        endTrouble();
        const QString name = isUpload ? u"local.mkv"_s : u"remote.mkv"_s;
        QTRY_COMPARE_WITH_TIMEOUT(
            m_real->status(),
            isUpload ? u"Upload queue finished: 1 uploaded"_s : u"Downloaded "_s + name, 20'000);
        const QString copy = isUpload ? m_tv.mediaFolder() : m_behind.path();
        QVERIFY(contentOf(copy + u'/' + name) == m_bytes);
        QFile::remove(copy + u'/' + (isUpload ? name : QString()));
        QCOMPARE(QDir(m_behind.path()).entryList({u".quiv*"_s}, QDir::Files | QDir::Hidden),
                 QStringList());

        beginTrouble(trouble);
        begin(isUpload);
        QTRY_VERIFY(isTroubled(trouble));
        QElapsedTimer sinceQuit;
        sinceQuit.start();
        m_real.reset();
        QVERIFY2(sinceQuit.elapsed() < LongestAnswer.count(),
                 qPrintable(QString::number(sinceQuit.elapsed())));
    }

private:
    void beginTrouble(const QString& name) {
        write(m_behind.filePath(u".trouble"_s), name.toLatin1());
    }
    void endTrouble() {
        QFile::remove(m_behind.filePath(u".trouble"_s));
        QFile::remove(m_behind.filePath(u".waiting"_s));
    }
    bool isTroubled(const QString& name) const {
        return name == u"slow"_s ? m_real->status().contains(u"loading"_s)
                                 : QFile::exists(m_behind.filePath(u".waiting"_s));
    }
    void begin(bool isUpload) {
        if (isUpload) {
            const QUrl file = QUrl::fromLocalFile(m_folder.filePath(u"local.mkv"_s));
            m_real->model.uploads()->queueDroppedFiles({file});
            return;
        }
        m_real->model.downloads()->downloadFile({u"remote.mkv"_s, u"VIDEO"_s, m_bytes.size(), {}});
        const QUrl place = QUrl::fromLocalFile(m_folder.filePath(u"remote.mkv"_s));
        QTRY_VERIFY(m_real->dialogs.desktop.isAsked);
        m_real->dialogs.desktop.answer(QList<QUrl>{place});
    }
    // Returns false while nothing is there to be cancelled, or when it is too late.
    bool cancel(bool isUpload) {
        if (!isUpload) {
            m_real->model.downloads()->cancelDownload();
            return m_real->status() == u"Canceling download..."_s;
        }
        const auto items = m_real->model.uploads()->uploadListItems();
        if (!items.isEmpty())
            m_real->model.uploads()->cancelUploadJob(items.constFirst().id);
        return !items.isEmpty();
    }
    bool isBusy() {
        return m_real->model.downloads()->state().isDownloading ||
               !m_real->model.uploads()->uploadListItems().isEmpty();
    }
    bool tvAnswersSoon() {
        HttpRequest request;
        request.url = "http://127.0.0.1:" + QByteArray::number(m_tv.port()) + "/api/info";
        QElapsedTimer since;
        since.start();
        const Task<HttpReply> asking = m_real->http.send(request);
        return QTest::qWaitFor([&] { return asking.isDone(); }, int(LongestAnswer.count())) &&
               since.elapsed() < LongestAnswer.count();
    }

    QTemporaryDir m_behind;
    QTemporaryDir m_folder;
    QProcess m_disk;
    SimulatorProcess m_tv;
    QByteArray m_bytes;
    std::unique_ptr<RealModel> m_real;
};

QTEST_GUILESS_MAIN(TroubledDiskTest)
#include "troubled_disk_test.moc"
