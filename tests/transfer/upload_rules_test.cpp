#include <QTest>

#include "support/test_main.h"
#include "transfer/upload_names.h"
#include "transfer/upload_progress.h"
#include "transfer/upload_queue_rules.h"
#include "transfer/upload_recovery.h"

#include <limits>

using namespace Qt::StringLiterals;
using namespace quiv;
using namespace std::chrono_literals;

namespace {

constexpr auto Huge = std::numeric_limits<std::int64_t>::max();

QList<QUrl> files(const QStringList& names) {
    QList<QUrl> urls;
    for (const QString& name : names)
        urls.append(QUrl::fromLocalFile(u"/videos/"_s + name));
    return urls;
}

ExpectedUpload expectedUpload(std::optional<std::int64_t> size) {
    return {u" Movie.mkv"_s, size, 100'000};
}

UploadStatusResponse status(const QString& name, std::int64_t total, std::int64_t updatedAtMs) {
    UploadStatusResponse response;
    response.state = u" completed\n"_s;
    response.fileName = name;
    response.totalBytes = total;
    response.updatedAtMs = updatedAtMs;
    return response;
}

FilesResponse listing(const QString& name, std::int64_t size) {
    FilesResponse response;
    response.files.append({name, u"VIDEO"_s, size, std::nullopt});
    return response;
}

} // namespace

class UploadRulesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void pickedFilesAreCountedAndTold() {
        const PickedFiles picked =
            pickedFiles(files({u"a.MP4"_s, u"b.srt"_s, u"notes.pdf"_s, u"mp4"_s}));
        QCOMPARE(picked.jobs.size(), 2);
        QCOMPARE(picked.unsupported, 2);
        QVERIFY(picked.jobs[0].id != picked.jobs[1].id);
        QCOMPARE(picked.jobs[0].id, picked.jobs[0].id.toUpper());

        QCOMPARE(queuedMessage(2, 1, 3), u"Queued 2 upload(s), 1 duplicate upload(s) skipped, "
                                         "skipped 3 unsupported file(s)"_s);
        QCOMPARE(queuedMessage(0, 2, 0), u"All selected files are already uploading or queued"_s);
        QCOMPARE(queueFinishedMessage(2, 1), u"Upload queue finished: 2 uploaded, 1 failed"_s);
        QCOMPARE(queueFinishedMessage(3, 0), u"Upload queue finished: 3 uploaded"_s);
    }

    void eachNameIsQueuedOnce() {
        QList<UploadJob> jobs;
        for (const char* name : {"x.mp4", "X.MP4", "  ", "movie.mkv", "x (1).mp4"})
            jobs.append({QString(), QUrl(), QString::fromLatin1(name)});
        const auto kept = filteredDuplicateUploadJobs(jobs, {uploadNameKey(u" Movie.MKV"_s)});
        QCOMPARE(kept.size(), 2);
        QCOMPARE(kept[0].remoteName, u"x.mp4"_s);
        QCOMPARE(kept[1].remoteName, u"x (1).mp4"_s);
    }

    void attachedSubtitlesTakeTheVideosName_data() {
        QTest::addColumn<QString>("video");
        QTest::addColumn<QString>("subtitle");
        QTest::addColumn<QString>("proposed");
        QTest::newRow("another name")
            << u"Movie.Name.2019.mkv"_s << u"movie.EN.SRT"_s << u"Movie.Name.2019.srt"_s;
        QTest::newRow("letter case") << u"Show.mp4"_s << u"Subs.ASS"_s << u"Show.ass"_s;
        QTest::newRow("the same name") << u"Show.mkv"_s << u"Show.srt"_s << u"Show.srt"_s;
        QTest::newRow("no extension") << u"Show"_s << u"subs"_s << u"Show.srt"_s;
    }
    void attachedSubtitlesTakeTheVideosName() {
        QFETCH(QString, video);
        QFETCH(QString, subtitle);
        QFETCH(QString, proposed);
        QCOMPARE(proposedSubtitleRemoteName(video, files({subtitle})[0]), proposed);
    }

    void copiesOnTheTvMatchTheirUpload() {
        const QString name = u"movie.mkv"_s;
        QVERIFY(uploadNamesMatch(name, u"Movie (2).mkv "_s));
        QVERIFY(!uploadNamesMatch(name, u"movie (2).mp4"_s));
        QVERIFY(!uploadNamesMatch(name, u"movie (a).mkv"_s));
        QVERIFY(!uploadNamesMatch(name, u"movie(2).mkv"_s));
        QVERIFY(!uploadNamesMatch(QString(), u" "_s));
    }

    void speedIsSampledAndSmoothed() {
        const auto start = std::chrono::steady_clock::time_point() + 1h;
        UploadProgress progress = progressReported({}, 0, 100'000'000, start);
        QCOMPARE(progress.speedBytesPerSecond, 0.0);
        progress = progressReported(progress, 3'000'000, 100'000'000, start + 300ms);
        QCOMPARE(progress.speedBytesPerSecond, 10'000'000.0);
        progress = progressReported(progress, 9'000'000, 100'000'000, start + 600ms);
        QCOMPARE(progress.speedBytesPerSecond, 0.65 * 10'000'000 + 0.35 * 20'000'000);
        const UploadProgress tooSoon =
            progressReported(progress, 10'000'000, 100'000'000, start + 700ms);
        QCOMPARE(tooSoon.speedBytesPerSecond, progress.speedBytesPerSecond);
        QCOMPARE(tooSoon.lastSentBytes, 10'000'000); // yet the sample point moves
        const UploadProgress back = progressReported(tooSoon, 5, 100'000'000, start + 2s);
        QCOMPARE(back.speedBytesPerSecond, progress.speedBytesPerSecond);
        QCOMPARE(progressReported({}, 200, 100, start).fraction, 1.0);
        QCOMPARE(uploadingMessage(u"a.mp4"_s, 2, 0.379), u"Uploading a.mp4 (2 queued)... 37%"_s);
        QCOMPARE(uploadingMessage(u"a.mp4"_s, 0, 1), u"Uploading a.mp4... 100%"_s);
    }

    void theEndIsNear() {
        QCOMPARE(nearEndThreshold(100'000'000), 99'737'856);
        QCOMPARE(nearEndThreshold(1'000'000), 985'000);
        QCOMPARE(nearEndThreshold(1), 0);
        QVERIFY(nearEndThreshold(Huge) > 0);
    }

    void theTvConfirmsByNameOrBySize() {
        const QString other = u"other.mkv"_s;
        const QString copy = u"Movie (1).MKV"_s;
        QVERIFY(confirmsUpload(status(copy, 0, 95'000), expectedUpload(std::nullopt)));
        QVERIFY(!confirmsUpload(status(copy, 0, 94'999), expectedUpload(std::nullopt)));
        QVERIFY(confirmsUpload(status(other, 10'009'000, 100'000), expectedUpload(10'000'000)));
        QVERIFY(!confirmsUpload(status(other, 10'011'000, 100'000), expectedUpload(10'000'000)));
        QVERIFY(!confirmsUpload(status(other, 1'004'097, 100'000), expectedUpload(1'000'000)));
        QVERIFY(confirmsUpload(status(other, 1'004'096, 100'000), expectedUpload(1'000'000)));
        QVERIFY(!confirmsUpload(status(other, -Huge, 100'000), expectedUpload(Huge)));
        QVERIFY(!confirmsUpload(status(other, 0, 100'000), expectedUpload(0)));
        QVERIFY(!confirmsUpload(status(copy, 9'000'000, 100'000), expectedUpload(10'000'000)));
        QVERIFY(confirmsUpload(status(copy, 0, 100'000), expectedUpload(10'000'000)));
        UploadStatusResponse receiving = status(copy, 10, 100'000);
        receiving.state = u"RECEIVING"_s;
        QVERIFY(!confirmsUpload(receiving, expectedUpload(10)));
    }

    void whatTheUploadBeforeLeftProvesNothing() {
        ExpectedUpload expected = expectedUpload(30'000);
        expected.storedBefore = u"first.srt"_s;
        QVERIFY(!confirmsUpload(status(u"First.srt"_s, 30'000, 100'000), expected));
        expected.storedBefore = u"movie (2).mkv"_s;
        QVERIFY(!confirmsUpload(listing(u"movie (2).mkv"_s, 30'000), expected));
        QVERIFY(confirmsUpload(listing(u"movie (3).mkv"_s, 30'000), expected));
        expected.storedBefore = u"movie.mkv"_s; // uploaded once more under its own name
        QVERIFY(confirmsUpload(status(u"movie.mkv"_s, 30'000, 100'000), expected));
    }

    void theListingConfirmsNameAndSize() {
        const QString copy = u"movie (12).mkv"_s;
        QVERIFY(confirmsUpload(listing(copy, 1'004'096), expectedUpload(1'000'000)));
        QVERIFY(!confirmsUpload(listing(copy, 1'004'097), expectedUpload(1'000'000)));
        QVERIFY(!confirmsUpload(listing(copy, 0), expectedUpload(3000)));
        QVERIFY(confirmsUpload(listing(copy, 1), expectedUpload(std::nullopt)));
        QVERIFY(!confirmsUpload(listing(u"movie.mp4"_s, 1'000'000), expectedUpload(1'000'000)));
    }
};

static const quiv::TestCase<UploadRulesTest> registered;
#include "upload_rules_test.moc"
