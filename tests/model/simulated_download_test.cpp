#include "simulator/simulator_process.h"
#include "support/real_model.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QStorageInfo>
#include <QTest>

#include <sys/mount.h>
#include <sys/resource.h>

using namespace Qt::StringLiterals;
using namespace quiv;
using quiv::simulator::SimulatorProcess;

namespace {

constexpr int FileSize = 3 << 20;
const QString DownloadPath = u"api/files/download"_s;

QByteArray contentOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

long peakKilobytes() {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

} // namespace

// Downloads over real sockets onto a real disk. Runs where it may mount file systems of its own.
class SimulatedDownloadTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        QFile file(m_tv.mediaFolder() + u"/Ein Film +&ü.mkv"_s);
        QVERIFY(file.open(QIODevice::WriteOnly));
        for (int byte = 0; byte < FileSize; ++byte)
            m_bytes.append(static_cast<char>(byte * 31 + byte / 251));
        file.write(m_bytes);
        QVERIFY2(m_tv.start(), qPrintable(m_tv.errorText()));
    }
    void init() {
        m_folder = std::make_unique<QTemporaryDir>();
        m_real = std::make_unique<RealModel>();
        m_real->dialogs.desktop.isOffered = true;
        QVERIFY(m_real->pair(m_tv.port(), m_tv.pairingCode()));
    }
    void cleanup() {
        m_tv.clearFaults();
        m_real.reset();
        QCOMPARE(QDir(m_folder->path()).entryList({u".quiv*"_s}, QDir::Files | QDir::Hidden),
                 QStringList());
    }

    void aFileArrivesByteForByte() {
        begin(path());
        QTRY_COMPARE(m_real->status(), u"Downloaded Ein Film +&ü.mkv"_s);
        QVERIFY(contentOf(path()) == m_bytes);
    }

    void aFileThatIsCutOffReplacesNothing_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<int>("bytes");
        for (int tenth = 0; tenth < 10; ++tenth)
            QTest::addRow("%d tenths", tenth) << u"reset-after-bytes"_s << FileSize / 10 * tenth;
        QTest::newRow("less than announced") << u"announce-more"_s << 1;
        QTest::newRow("less, unannounced") << u"omit-length"_s << FileSize / 2;
        QTest::newRow("endless") << u"omit-length"_s << INT_MAX;
    }
    void aFileThatIsCutOffReplacesNothing() {
        QFETCH(QString, kind);
        QFETCH(int, bytes);
        writeBefore();
        QVERIFY(m_tv.setFault({{u"path"_s, DownloadPath}, {u"kind"_s, kind}, {u"bytes"_s, bytes}}));
        begin(path());
        const auto code =
            bytes > FileSize ? HttpErrorCode::ReplyTooLarge : HttpErrorCode::ConnectionLost;
        QTRY_COMPARE(m_real->status(),
                     u"Download failed for Ein Film +&ü.mkv: "_s + HttpError(code).description());
        QCOMPARE(contentOf(path()), "before");
        m_tv.clearFaults();
        begin(path());
        QTRY_COMPARE(m_real->status(), u"Downloaded Ein Film +&ü.mkv"_s);
        QVERIFY(contentOf(path()) == m_bytes);
    }

    void aStalledDownloadIsCancelledWithinASecond() {
        beginSlowly();
        QElapsedTimer since;
        since.start();
        m_real->model.downloads()->cancelDownload();
        QTRY_COMPARE(m_real->status(), u"Download canceled"_s);
        QVERIFY2(since.elapsed() < 1000, qPrintable(QString::number(since.elapsed())));
        QCOMPARE(contentOf(path()), "before");
    }

    void quittingWhileItArrivesLeavesNothing() {
        beginSlowly();
        m_real.reset();
        QCOMPARE(contentOf(path()), "before"); // cleanup() looks for the rest
    }

    void aFullOrReadOnlyDiskIsSaid() {
        const QByteArray disk = m_folder->path().toUtf8();
        if (::mount("tmpfs", disk.constData(), "tmpfs", 0, "size=1m") != 0)
            QSKIP("cannot mount file systems here");
        writeBefore();
        begin(path());
        QTRY_COMPARE(m_real->status(),
                     u"Download failed for Ein Film +&ü.mkv: The file could not be "
                     "written. Check the free space of the disk."_s);
        QCOMPARE(contentOf(path()), "before");
        QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files | QDir::Hidden).size(), 1);

        QCOMPARE(::mount(nullptr, disk.constData(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr), 0);
        begin(path());
        QTRY_VERIFY2(m_real->status().contains(u"Files cannot be written to"_s),
                     qPrintable(m_real->status()));
        ::umount(disk.constData());
    }

    void aFileOfUnknownSizeDoesNotFillTheDisk() {
        const QByteArray disk = m_folder->path().toUtf8();
        if (::mount("tmpfs", disk.constData(), "tmpfs", 0, "size=80m") != 0)
            QSKIP("cannot mount file systems here");
        QVERIFY(m_tv.setFault(
            {{u"path"_s, DownloadPath}, {u"kind"_s, u"omit-length"_s}, {u"bytes"_s, 40 << 20}}));
        begin(path(), u"Ein Film +&ü.mkv"_s, 0); // there is room, but too little would be left
        QTRY_VERIFY2(m_real->status().endsWith(u"Check the free space of the disk."_s),
                     qPrintable(m_real->status()));
        ::umount(disk.constData());
    }

    void memoryDoesNotGrowWithTheFile() {
        if (QStorageInfo(m_folder->path()).bytesAvailable() < qint64(5) << 30)
            QSKIP("needs 5 GiB of disk");
        const QString name = u"Huge.mkv"_s;
        QFile sparse(m_tv.mediaFolder() + u'/' + name);
        QVERIFY(sparse.open(QIODevice::WriteOnly) && sparse.resize(qint64(4) << 30));
        const long before = peakKilobytes();
        begin(path(), name, qint64(4) << 30);
        QTRY_COMPARE_WITH_TIMEOUT(m_real->status(), u"Downloaded Huge.mkv"_s, 100'000);
        const long grown = peakKilobytes() - before;
        QVERIFY2(grown < 16 << 10, qPrintable(QString::number(grown)));
        QCOMPARE(QFileInfo(path()).size(), qint64(4) << 30);
        sparse.remove();
    }

private:
    QString path() const { return m_folder->filePath(u"kept.mkv"_s); }
    void writeBefore() {
        QFile file(path());
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("before") == 6);
    }
    void begin(const QString& destination, const QString& name = u"Ein Film +&ü.mkv"_s,
               qint64 size = FileSize) {
        m_real->model.downloads()->downloadFile({name, u"VIDEO"_s, size, {}});
        QTRY_VERIFY(m_real->dialogs.desktop.isAsked);
        m_real->dialogs.desktop.answer(QList<QUrl>{QUrl::fromLocalFile(destination)});
    }

    // Over a file that is there; returns when a part has come.
    void beginSlowly() {
        writeBefore();
        QVERIFY(m_tv.setFault({{u"path"_s, DownloadPath},
                               {u"kind"_s, u"trickle"_s},
                               {u"bytesPerSecond"_s, 1 << 20}}));
        begin(path());
        QTRY_VERIFY(m_real->model.downloads()->state().currentDownloadProgress > 0);
    }

    SimulatorProcess m_tv;
    QByteArray m_bytes;
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<RealModel> m_real;
};

QTEST_GUILESS_MAIN(SimulatedDownloadTest)
#include "simulated_download_test.moc"
