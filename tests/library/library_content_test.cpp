#include "library/library_content.h"

#include <QElapsedTimer>
#include <QTest>

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

const QString Video = QStringLiteral("VIDEO");
const QString Subtitle = QStringLiteral("SUBTITLE");
const QString Other = QStringLiteral("OTHER");

LibraryContent largeContent(int count) {
    QList<RemoteFile> files;
    QList<RemoteVideo> videos;
    for (int index = 0; index < count; ++index) {
        const QString base = QStringLiteral("Some Film With A Name %1").arg(index);
        files.append(file(base + QStringLiteral(".mkv"), Video, index * 7919ll % count));
        files.append(file(base + QStringLiteral(".srt"), Subtitle, index));
        videos.append(video(base + QStringLiteral(".mkv"), base, 1));
    }
    return contentOf(files, videos);
}

qint64 millisecondsFor(int count) {
    QElapsedTimer timer;
    timer.start();
    const auto content = largeContent(count);
    const auto found = filteredRows(content.groupedFiles, QStringLiteral("name 99"));
    return found.isEmpty() ? -1 : timer.elapsed();
}

} // namespace

class LibraryContentTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void housekeepingFilesAreHidden() {
        const auto content = contentOf(
            {file(QStringLiteral(".ombra_rw_probe_123"), Other),
             file(QStringLiteral(" .DS_Store"), Other),
             file(QStringLiteral("Movie.mkv.moving"), Video), file(QStringLiteral(" "), Video),
             file(QStringLiteral(".."), Other), file(QStringLiteral(" kept "), Other)});
        QCOMPARE(namesOf(content.files), QStringList(QStringLiteral(" kept ")));
        QCOMPARE(idsOf(content.groupedFiles), QStringList(QStringLiteral("other: kept ")));
    }

    void filesJoinTheFirstVideoOfTheSameBaseName() {
        const auto content =
            contentOf({file(QStringLiteral("Show.S01E01.mkv"), QStringLiteral("video"), 1),
                       file(QStringLiteral("show.s01e01.mp4"), Video, 9),
                       file(QStringLiteral("show.s01e01.SRT"), Subtitle, 3),
                       file(QStringLiteral("SHOW.S01E01.Ass"), Subtitle, 2),
                       file(QStringLiteral("Show.S01E01.nfo"), Other),
                       file(QStringLiteral("Show.S01E01.en.srt"), Subtitle)},
                      {video(QStringLiteral("Show.S01E01.mkv"), QStringLiteral("The Show"), -4)});
        QCOMPARE(idsOf(content.groupedFiles),
                 QStringList({QStringLiteral("show.s01e01.mp4"), QStringLiteral("Show.S01E01.mkv"),
                              QStringLiteral("subtitle:Show.S01E01.en.srt")}));
        const FileGroup& joined = content.groupedFiles[0].group;
        QCOMPARE(joined.title, QStringLiteral("show.s01e01.mp4"));
        QCOMPARE(namesOf(joined.subtitles), QStringList({QStringLiteral("SHOW.S01E01.Ass"),
                                                         QStringLiteral("show.s01e01.SRT")}));
        QCOMPARE(joined.others.size(), 1);
        QVERIFY(!joined.reportedSubtitleCount);
        const FileGroup& listed = content.groupedFiles[1].group;
        QCOMPARE(listed.title, QStringLiteral("The Show"));
        QCOMPARE(listed.reportedSubtitleCount, 0);
        const FileGroup& alone = content.groupedFiles[2].group;
        QCOMPARE(alone.title, QStringLiteral("Show.S01E01.en.srt"));
        QVERIFY(!alone.video && !alone.reportedSubtitleCount);
    }

    void rowsAreOrderedByRecencyThenVideoThenTitle() {
        const auto content = contentOf(
            {file(QStringLiteral("b.mkv"), Video), file(QStringLiteral("A2.mkv"), Video),
             file(QStringLiteral("A.mkv"), Video), file(QStringLiteral("a.txt"), Other, -5),
             file(QStringLiteral("0.txt"), Other), file(QStringLiteral("old.mkv"), Video, 1),
             file(QStringLiteral("old.srt"), Subtitle, 50),
             file(QStringLiteral("new.mkv"), Video, 49)});
        QCOMPARE(idsOf(content.groupedFiles),
                 QStringList({QStringLiteral("old.mkv"), QStringLiteral("new.mkv"),
                              QStringLiteral("A2.mkv"), QStringLiteral("b.mkv"),
                              QStringLiteral("other:0.txt"), QStringLiteral("A.mkv")}));
    }

    void aNameListedTwiceIsHarmless() {
        const auto content = contentOf(
            {file(QStringLiteral("a.mkv"), Video, 1), file(QStringLiteral("a.mkv"), Video, 2),
             file(QStringLiteral("x.srt"), Subtitle), file(QStringLiteral("x.srt"), Subtitle)},
            {video(QStringLiteral("a.mkv"), QStringLiteral("One")),
             video(QStringLiteral("a.mkv"), QStringLiteral("Two"))});
        QCOMPARE(content.groupedFiles.size(), 2);
        QCOMPARE(content.groupedFiles[1].group.subtitles.size(), 2);
    }

    void storageAndTargetAreWhatTheTvSays() {
        FilesResponse response;
        QCOMPARE(libraryContent(response).preferredUploadTarget, QStringLiteral("INTERNAL"));
        response.usbStorage = RemoteUsbStorage{.driveId = {}, .driveName = {}, .isConnected = true};
        response.storage = RemoteStorage{1, 2, 3};
        response.usbSetupHint = QStringLiteral("  ");
        LibraryContent content = libraryContent(response);
        QCOMPARE(content.preferredUploadTarget, QStringLiteral("USB"));
        QCOMPARE(content.storage->freeBytes, 3);
        QCOMPARE(content.usbSetupHint, QString());
        response.usbStorage->isConnected = false;
        response.internalStorage = RemoteStorage{4, 5, 6};
        content = libraryContent(response);
        QCOMPARE(content.preferredUploadTarget, QStringLiteral("INTERNAL"));
        QCOMPARE(content.storage->freeBytes, 6);
        response.preferredUploadTarget = QStringLiteral("usb");
        QCOMPARE(libraryContent(response).preferredUploadTarget, QStringLiteral("USB"));
    }

    void aSearchFindsTitlesAndFileNames() {
        const auto content = contentOf(
            {file(QStringLiteral("one.mkv"), Video),
             file(QStringLiteral("my.movie.en.srt"), Subtitle),
             file(QStringLiteral("two.mkv"), Video), file(QStringLiteral("two.srt"), Subtitle)},
            {video(QStringLiteral("one.mkv"), QStringLiteral("Ünique"))});
        const auto search = [&content](const char* text) {
            return idsOf(filteredRows(content.groupedFiles, QString::fromUtf8(text)));
        };
        QCOMPARE(search("  MOVIE "), QStringList(QStringLiteral("subtitle:my.movie.en.srt")));
        QCOMPARE(search("ÜNI"), QStringList(QStringLiteral("one.mkv")));
        QCOMPARE(search("one.m"), QStringList(QStringLiteral("one.mkv")));
        QCOMPARE(search("two.srt"), QStringList(QStringLiteral("two.mkv")));
        QCOMPARE(search("   ").size(), 3);
        QVERIFY(search("two.mkvtwo").isEmpty());
    }

    // Ten times the rows may cost ten times the time and then some, not a hundred times.
    void groupingAndSearchingStayLinear() {
        QVERIFY(millisecondsFor(2'000) >= 0); // warms up
        const qint64 small = std::max<qint64>(millisecondsFor(10'000), 1);
        const qint64 large = millisecondsFor(100'000);
        QVERIFY2(large < small * 40,
                 qPrintable(QStringLiteral("%1 ms, then %2 ms").arg(small).arg(large)));
    }
};

QTEST_GUILESS_MAIN(LibraryContentTest)
#include "library_content_test.moc"
