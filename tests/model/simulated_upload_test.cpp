#include "simulator/simulator_process.h"
#include "support/real_model.h"

#include <QCryptographicHash>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTest>

#include <sys/resource.h>

using namespace Qt::StringLiterals;
using namespace quiv;
using quiv::simulator::SimulatorProcess;

namespace {

constexpr qint64 FileSize = 8 << 20;

QByteArray digest(const QString& path) {
    QFile file(path);
    QCryptographicHash hash(QCryptographicHash::Sha256);
    return file.open(QIODevice::ReadOnly) && hash.addData(&file) ? hash.result() : QByteArray();
}

// Every file of a folder by its content.
QHash<QByteArray, QString> digests(const QString& folder) {
    QHash<QByteArray, QString> found;
    for (const QString& name : QDir(folder).entryList(QDir::Files | QDir::Hidden))
        found.insert(digest(folder + u'/' + name), name);
    return found;
}

long peakKilobytes() {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

} // namespace

// The upload queue over real sockets, with real files and a TV that misbehaves.
class SimulatedUploadTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        m_files = std::make_unique<QTemporaryDir>();
        QVERIFY2(m_tv.start(), qPrintable(m_tv.errorText()));
        m_real = std::make_unique<RealModel>();
        connect(m_real->model.status(), &StatusLine::statusMessageChanged, this,
                [this] { m_said.append(status()); });
        QVERIFY(m_real->pair(m_tv.port(), m_tv.pairingCode()));
        m_said.clear();
    }
    void cleanup() {
        m_real.reset();
        m_tv.stop();
        for (const QString& name : stored())
            QFile::remove(m_tv.mediaFolder() + u'/' + name);
    }

    void filesArriveWithAllTheirBytes() {
        const QUrl video = file(u"Ein Film +&ü.mkv"_s, FileSize);
        const QUrl subtitle = file(u"Ein Film +&ü.srt"_s, 100);
        const QUrl empty = file(u"empty.srt"_s, 0);
        upload({video, subtitle, empty});
        QCOMPARE(status(), u"Upload queue finished: 3 uploaded"_s);
        for (const QUrl& url : {video, subtitle, empty})
            QCOMPARE(digest(m_tv.mediaFolder() + u'/' + url.fileName()), digest(url.toLocalFile()));
        upload({video}); // once more
        QCOMPARE(stored().size(), 4);
        QVERIFY(stored().contains(u"Ein Film +&ü (1).mkv"_s));
    }

    // Whatever goes wrong: what is called uploaded is there, whole and once; the next file follows.
    void noFaultLosesAFile_data() {
        QTest::addColumn<QJsonObject>("fault");
        QTest::addColumn<bool>("arrives");
        const auto row = [](const char* name, const char* kind, bool arrives,
                            QJsonObject more = {}) {
            more[u"path"_s] = u"api/files/upload"_s;
            more[u"method"_s] = u"PUT"_s;
            more[u"kind"_s] = QString::fromLatin1(kind);
            more[u"times"_s] = 1;
            QTest::newRow(name) << more << arrives;
        };
        const auto bytes = [](qint64 count) {
            return QJsonObject{{u"bytes"_s, count}};
        };
        row("reset at once", "reset-before-reply", false);
        row("reset half way", "read-then-reset", false, bytes(FileSize / 2));
        row("reset before the last bytes", "read-then-reset", false, bytes(FileSize - 4096));
        row("stored, then reset", "store-then-reset", true);
        row("stored under another name", "rename-store", true);
        row("stored, its reply lost", "reset-after-bytes", true, bytes(0));
        row("full", "fill-up", false, bytes(1 << 20));
        row("success before its end", "answer-early", false, bytes(200 << 10));
        row("too large, said at once", "status", false, {{u"status"_s, 413}});
        row("500", "status", false, {{u"status"_s, 500}});
    }
    void noFaultLosesAFile() {
        QFETCH(QJsonObject, fault);
        QFETCH(bool, arrives);
        const QUrl first = file(u"First.mkv"_s, FileSize);
        const QUrl second = file(u"Second.mkv"_s, FileSize / 2);
        QVERIFY(m_tv.setFault(fault));
        upload({first, second});
        const QHash<QByteArray, QString> there = digests(m_tv.mediaFolder());
        QCOMPARE(there.value(digest(second.toLocalFile())), u"Second.mkv"_s);
        QCOMPARE(there.contains(digest(first.toLocalFile())), arrives);
        QCOMPARE(there.size(), arrives ? 2 : 1); // neither parts nor copies
        QCOMPARE(status(), arrives ? u"Upload queue finished: 2 uploaded"_s
                                   : u"Upload queue finished: 1 uploaded, 1 failed"_s);
        QCOMPARE(m_said.join(u'\n').contains(u"Upload failed for First.mkv: "_s), !arrives);
    }

    void theRecordOfTheFileBeforeIsNoProof() {
        const QList<QUrl> urls{file(u"Ein Film.srt"_s, 30'000), file(u"Ein Film.en.srt"_s, 33'000)};
        QVERIFY(m_tv.setFault({{u"path"_s, u"api/files/upload"_s},
                               {u"kind"_s, u"fill-up"_s},
                               {u"bytes"_s, 1000},
                               {u"skip"_s, 1}}));
        upload(urls);
        QCOMPARE(status(), u"Upload queue finished: 1 uploaded, 1 failed"_s);
        QCOMPARE(digests(m_tv.mediaFolder()).keys(), {digest(urls[0].toLocalFile())});
    }

    // The answer is lost, and the TV's list tells that there is less than was sent.
    void aPartOfAFileIsNoSuccess() {
        const QUrl first = file(u"First.mkv"_s, FileSize);
        for (const char* kind : {"truncate-store", "reset-after-bytes"})
            QVERIFY(m_tv.setFault({{u"path"_s, u"api/files/upload"_s},
                                   {u"kind"_s, QString::fromLatin1(kind)},
                                   {u"bytes"_s, 0},
                                   {u"times"_s, 1}}));
        QVERIFY(m_tv.setFault(
            {{u"path"_s, u"api/upload-status"_s}, {u"kind"_s, u"status"_s}, {u"status"_s, 404}}));
        upload({first});
        QCOMPARE(status(), u"Upload queue finished: 0 uploaded, 1 failed"_s);
        m_tv.clearFaults();
    }

    void aTvThatGoesAndComesBackGetsItsFilesThen() {
        QVERIFY(m_tv.setFault({{u"path"_s, u"api/files/upload"_s},
                               {u"kind"_s, u"vanish"_s},
                               {u"bytes"_s, FileSize / 2},
                               {u"milliseconds"_s, 1000},
                               {u"times"_s, 1}}));
        const QList<QUrl> urls{file(u"First.mkv"_s, FileSize), file(u"Second.mkv"_s, FileSize)};
        upload(urls);
        QCOMPARE(status(), u"Upload queue finished: 1 uploaded, 1 failed"_s);
        QCOMPARE(stored(), QStringList(u"Second.mkv"_s));
        Uploads& uploads = *m_real->model.uploads();
        uploads.retryUploadJob(uploads.uploadListItems().constFirst().id);
        QTRY_COMPARE(status(), u"Upload queue finished: 1 uploaded"_s);
        for (const QUrl& url : urls)
            QCOMPARE(digest(m_tv.mediaFolder() + u'/' + url.fileName()), digest(url.toLocalFile()));
    }

    void aStalledUploadIsCancelledWithinASecond_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<bool>("isSilent"); // the TV answers nothing at all
        QTest::newRow("stalled") << u"stall-reading"_s << false;
        QTest::newRow("stored but silent") << u"store-then-hang"_s << false;
        QTest::newRow("stalled, silent TV") << u"stall-reading"_s << true;
    }
    void aStalledUploadIsCancelledWithinASecond() {
        QFETCH(QString, kind);
        QFETCH(bool, isSilent);
        QVERIFY(m_tv.setFault(
            {{u"path"_s, u"api/files/upload"_s}, {u"kind"_s, kind}, {u"bytes"_s, 1 << 20}}));
        Uploads& uploads = *m_real->model.uploads();
        uploads.queueUploadsFromPicker({file(u"First.mkv"_s, 64 << 20)});
        QTRY_VERIFY(status().startsWith(u"Uploading First.mkv... "_s));
        if (isSilent)
            QVERIFY(m_tv.setFault({{u"path"_s, u"*"_s}, {u"kind"_s, u"hang"_s}}));
        if (kind == "store-then-hang"_L1)
            QTRY_VERIFY(!stored().isEmpty() && !stored().first().startsWith(u'.'));
        QElapsedTimer since;
        since.start();
        uploads.cancelUploadJob(uploads.uploadListItems()[0].id);
        QTRY_VERIFY(uploads.uploadListItems().isEmpty());
        QVERIFY2(since.elapsed() < 1000, qPrintable(QString::number(since.elapsed())));
        const bool isThere = kind == "store-then-hang"_L1;
        QCOMPARE(m_said.contains(u"Canceled First.mkv"_s), !isThere);
        m_tv.clearFaults();
    }

    void aFileThatShrinksOrGoesIsSaid() {
        QVERIFY(m_tv.setFault({{u"path"_s, u"api/files/upload"_s},
                               {u"kind"_s, u"slow-reading"_s},
                               {u"bytesPerSecond"_s, 32 << 20},
                               {u"times"_s, 1}}));
        const QUrl shrinking = file(u"Shrinking.mkv"_s, 64 << 20);
        const QUrl gone = file(u"Gone.mkv"_s, 10);
        m_real->model.uploads()->queueUploadsFromPicker({shrinking, gone});
        QFile::remove(gone.toLocalFile());
        QTRY_VERIFY(status().startsWith(u"Uploading Shrinking.mkv (1 queued)... "_s));
        QVERIFY(QFile::resize(shrinking.toLocalFile(), 1000));
        QTRY_COMPARE_WITH_TIMEOUT(status(), u"Upload queue finished: 0 uploaded, 2 failed"_s,
                                  20'000);
        QVERIFY(m_said.join(u'\n').contains(
            u"Upload failed for Gone.mkv: The file could not be read."_s));
        QCOMPARE(stored(), QStringList());
    }

    void severalHundredFilesAreQueuedAtOnce() {
        QList<QUrl> urls;
        for (int number = 0; number < 300; ++number)
            urls.append(file(u"Part %1.mkv"_s.arg(number), 10));
        QElapsedTimer since;
        since.start();
        m_real->model.uploads()->queueUploadsFromPicker(urls);
        QVERIFY2(since.elapsed() < 200, qPrintable(QString::number(since.elapsed())));
        QTRY_COMPARE_WITH_TIMEOUT(status(), u"Upload queue finished: 300 uploaded"_s, 60'000);
        QCOMPARE(stored().size(), 300);
    }

    void memoryDoesNotGrowWithTheFile() {
        QFile sparse(m_files->filePath(u"Huge.mkv"_s));
        QVERIFY(sparse.open(QIODevice::WriteOnly) && sparse.resize(qint64(4) << 30));
        sparse.close();
        const long before = peakKilobytes();
        QVERIFY(m_tv.setFault({{u"path"_s, u"api/files/upload"_s},
                               {u"kind"_s, u"fill-up"_s},
                               {u"bytes"_s, qint64(4) << 30}}));
        m_real->model.uploads()->queueUploadsFromPicker({QUrl::fromLocalFile(sparse.fileName())});
        QTRY_VERIFY_WITH_TIMEOUT(status().startsWith(u"Upload queue finished"_s), 100'000);
        const long grown = peakKilobytes() - before;
        QVERIFY2(grown < 16 << 10, qPrintable(QString::number(grown)));
    }

private:
    const QString& status() { return m_real->status(); }
    QStringList stored() { return QDir(m_tv.mediaFolder()).entryList(QDir::Files | QDir::Hidden); }
    QUrl file(const QString& name, qint64 size) {
        QFile file(m_files->filePath(name));
        if (file.open(QIODevice::WriteOnly))
            file.write((name.toUtf8() + QByteArray(size, 'x')).first(size));
        return QUrl::fromLocalFile(file.fileName());
    }
    void upload(const QList<QUrl>& urls) {
        m_real->model.uploads()->queueUploadsFromPicker(urls);
        QTRY_VERIFY_WITH_TIMEOUT(m_said.join(u'\n').contains(u"queue finished"_s) &&
                                     status().startsWith(u"Upload queue finished"_s),
                                 30'000);
        m_said.append(QString());
    }

    SimulatorProcess m_tv;
    std::unique_ptr<QTemporaryDir> m_files;
    std::unique_ptr<RealModel> m_real;
    QStringList m_said;
};

QTEST_GUILESS_MAIN(SimulatedUploadTest)
#include "simulated_upload_test.moc"
