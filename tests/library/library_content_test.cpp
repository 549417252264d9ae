#include "library/library_content.h"
#include "support/test_main.h"

#include <QElapsedTimer>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace quiv;

namespace {

RemoteFile file(const QString& name, const QString& kind, std::optional<std::int64_t> time = {}) {
    return {name, kind, 1, time};
}

RemoteVideo video(const QString& name, const QString& displayName, std::int64_t subtitles = 0) {
    return {name, displayName, 1, subtitles, {}, {}};
}

LibraryContent contentOf(const QList<RemoteFile>& files, const QList<RemoteVideo>& videos = {}) {
    FilesResponse response;
    response.files = files;
    response.videos = videos;
    return libraryContent(response);
}

QStringList idsOf(const QList<LibraryRow>& rows) {
    QStringList ids;
    for (const LibraryRow& row : rows)
        ids.append(row.group.id);
    return ids;
}

QStringList namesOf(const QList<RemoteFile>& files) {
    QStringList names;
    for (const RemoteFile& each : files)
        names.append(each.name);
    return names;
}

const QString Video = u"VIDEO"_s;
const QString Subtitle = u"SUBTITLE"_s;
const QString Other = u"OTHER"_s;

LibraryContent largeContent(int count) {
    QList<RemoteFile> files;
    QList<RemoteVideo> videos;
    for (int index = 0; index < count; ++index) {
        const QString base = u"Some Film With A Name %1"_s.arg(index);
        files.append(file(base + u".mkv"_s, Video, index * 7919ll % count));
        files.append(file(base + u".srt"_s, Subtitle, index));
        videos.append(video(base + u".mkv"_s, base, 1));
    }
    return contentOf(files, videos);
}

qint64 millisecondsFor(int count) {
    QElapsedTimer timer;
    timer.start();
    const auto content = largeContent(count);
    const auto found = filteredRows(content.groupedFiles, u"name 99"_s);
    return found.isEmpty() ? -1 : timer.elapsed();
}

} // namespace

class LibraryContentTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void housekeepingFilesAreHidden() {
        const auto content =
            contentOf({file(u".ombra_rw_probe_123"_s, Other), file(u" .DS_Store"_s, Other),
                       file(u"Movie.mkv.moving"_s, Video), file(u" "_s, Video),
                       file(u".."_s, Other), file(u" kept "_s, Other)});
        QCOMPARE(idsOf(content.groupedFiles), QStringList(u"other: kept "_s));
    }

    void filesJoinTheFirstVideoOfTheSameBaseName() {
        const auto content = contentOf(
            {file(u"Show.S01E01.mkv"_s, u"video"_s, 1), file(u"show.s01e01.mp4"_s, Video, 9),
             file(u"show.s01e01.SRT"_s, Subtitle, 3), file(u"SHOW.S01E01.Ass"_s, Subtitle, 2),
             file(u"Show.S01E01.nfo"_s, Other), file(u"Show.S01E01.en.srt"_s, Subtitle)},
            {video(u"Show.S01E01.mkv"_s, u"The Show"_s, -4)});
        QCOMPARE(idsOf(content.groupedFiles),
                 QStringList({u"show.s01e01.mp4"_s, u"Show.S01E01.mkv"_s,
                              u"subtitle:Show.S01E01.en.srt"_s}));
        const FileGroup& joined = content.groupedFiles[0].group;
        QCOMPARE(joined.title, u"show.s01e01.mp4"_s);
        QCOMPARE(namesOf(joined.subtitles),
                 QStringList({u"SHOW.S01E01.Ass"_s, u"show.s01e01.SRT"_s}));
        QCOMPARE(joined.others.size(), 1);
        QVERIFY(!joined.reportedSubtitleCount);
        const FileGroup& listed = content.groupedFiles[1].group;
        QCOMPARE(listed.title, u"The Show"_s);
        QCOMPARE(listed.reportedSubtitleCount, 0);
        const FileGroup& alone = content.groupedFiles[2].group;
        QCOMPARE(alone.title, u"Show.S01E01.en.srt"_s);
        QVERIFY(!alone.video && !alone.reportedSubtitleCount);
    }

    void rowsAreOrderedByRecencyThenVideoThenTitle() {
        const auto content = contentOf(
            {file(u"b.mkv"_s, Video), file(u"A2.mkv"_s, Video), file(u"A.mkv"_s, Video),
             file(u"a.txt"_s, Other, -5), file(u"0.txt"_s, Other), file(u"old.mkv"_s, Video, 1),
             file(u"old.srt"_s, Subtitle, 50), file(u"new.mkv"_s, Video, 49)});
        QCOMPARE(idsOf(content.groupedFiles),
                 QStringList({u"old.mkv"_s, u"new.mkv"_s, u"A2.mkv"_s, u"b.mkv"_s, u"other:0.txt"_s,
                              u"A.mkv"_s}));
    }

    void aNameListedTwiceIsHarmless() {
        const auto content = contentOf({file(u"a.mkv"_s, Video, 1), file(u"a.mkv"_s, Video, 2),
                                        file(u"x.srt"_s, Subtitle), file(u"x.srt"_s, Subtitle)},
                                       {video(u"a.mkv"_s, u"One"_s), video(u"a.mkv"_s, u"Two"_s)});
        QCOMPARE(content.groupedFiles.size(), 2);
        QCOMPARE(content.groupedFiles[1].group.subtitles.size(), 2);
    }

    void aRowHasRoomForSomeFiles() {
        QList<RemoteFile> files{file(u"a.mkv"_s, Video)};
        for (int number = 0; number < 300; ++number) {
            files.append(file(u"a.s%1"_s.arg(number), Subtitle));
            files.append(file(u"again.txt"_s, Other));
        }
        const auto rows = contentOf(files).groupedFiles;
        QCOMPARE(rows.size(), 1 + 44 + 1);
        QCOMPARE(rows[0].group.subtitles.size(), 256);
        QCOMPARE(rows.last().group.others.size() + rows[1].group.others.size(), 256);
    }

    void storageAndTargetAreWhatTheTvSays() {
        FilesResponse response;
        QCOMPARE(libraryContent(response).preferredUploadTarget, u"INTERNAL"_s);
        response.usbStorage = RemoteUsbStorage{.driveId = {}, .driveName = {}, .isConnected = true};
        response.storage = RemoteStorage{1, 2, 3};
        response.usbSetupHint = u"  "_s;
        LibraryContent content = libraryContent(response);
        QCOMPARE(content.preferredUploadTarget, u"USB"_s);
        QCOMPARE(content.storage->freeBytes, 3);
        QCOMPARE(content.usbSetupHint, QString());
        response.usbStorage->isConnected = false;
        response.internalStorage = RemoteStorage{4, 5, 6};
        content = libraryContent(response);
        QCOMPARE(content.preferredUploadTarget, u"INTERNAL"_s);
        QCOMPARE(content.storage->freeBytes, 6);
        response.preferredUploadTarget = u"usb"_s;
        QCOMPARE(libraryContent(response).preferredUploadTarget, u"USB"_s);
    }

    void aSearchFindsTitlesAndFileNames() {
        const auto content =
            contentOf({file(u"one.mkv"_s, Video), file(u"my.movie.en.srt"_s, Subtitle),
                       file(u"two.mkv"_s, Video), file(u"two.srt"_s, Subtitle)},
                      {video(u"one.mkv"_s, u"Ünique"_s)});
        const auto search = [&content](const char* text) {
            return idsOf(filteredRows(content.groupedFiles, QString::fromUtf8(text)));
        };
        QCOMPARE(search("  MOVIE "), QStringList(u"subtitle:my.movie.en.srt"_s));
        QCOMPARE(search("ÜNI"), QStringList(u"one.mkv"_s));
        QCOMPARE(search("one.m"), QStringList(u"one.mkv"_s));
        QCOMPARE(search("two.srt"), QStringList(u"two.mkv"_s));
        QCOMPARE(search("   ").size(), 3);
        QVERIFY(search("two.mkvtwo").isEmpty());
    }

    // Ten times the rows may cost ten times the time and then some, not a hundred times.
    void groupingAndSearchingStayLinear() {
#ifdef __SANITIZE_THREAD__
        QSKIP("the sanitizer's own cost does not stay linear");
#endif
        QVERIFY(millisecondsFor(2'000) >= 0); // warms up
        const qint64 small = std::max<qint64>(millisecondsFor(10'000), 1);
        const qint64 large = millisecondsFor(100'000);
        QVERIFY2(large < small * 40, qPrintable(u"%1 ms, then %2 ms"_s.arg(small).arg(large)));
    }
};

static const quiv::TestCase<LibraryContentTest> registered;
#include "library_content_test.moc"
