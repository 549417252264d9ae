#include "window_fixture.h"

#include "transfer/upload_names.h"

#include <QTest>
#include <QUrlQuery>

using namespace quiv;

// The library's rows in the real window: reading, walking, scrolling, acting on them.
class LibraryRowsTest : public QObject, protected WindowFixture {
    Q_OBJECT

private Q_SLOTS:
    void init() { open(); }
    void cleanup() { close(); }

    void rowsAreReadOut();
    void arrowKeysWalkTheLibrary();
    void aRefreshKeepsPlaceAndCurrentRow();
    void scrollingFastFetchesFewPictures();
    void aDownloadIsChosenAndCancelled();
    void aRowsControlsAskForIt();
    void aRefreshOfThePlayerKeepsTheRows();
};

void LibraryRowsTest::rowsAreReadOut() {
    LibraryRow row = sampleRow(QStringLiteral("a.mkv"), QStringLiteral("Glacier Road"));
    row.group.reportedSubtitleCount = 2;
    row.storageLocation = QStringLiteral("USB");
    m_presenter->setSelectedDevice(bedroom);
    m_presenter->setContent(contentOf({row}));
    QTRY_VERIFY(find(QAccessible::ListItem, "Glacier Road"));
    QCOMPARE(find(QAccessible::ListItem, "Glacier Road")->text(QAccessible::Description),
             QStringLiteral("2 subtitles"));
    QVERIFY(shows(QStringLiteral("2 subtitles")));
    QVERIFY(shows(QStringLiteral("USB")));
}

void LibraryRowsTest::arrowKeysWalkTheLibrary() {
    m_presenter->setSelectedDevice(bedroom);
    m_presenter->setContent(contentOf(sampleRows(30)));
    QVERIFY(libraryList());
    libraryList()->forceActiveFocus(Qt::TabFocusReason);
    for (int step = 0; step < 20; ++step)
        key(Qt::Key_Down);
    QCOMPARE(libraryList()->property("currentIndex").toInt(), 20);
    QTRY_VERIFY(find(QAccessible::ListItem, "video 20")); // scrolled into view
    key(Qt::Key_End);
    QCOMPARE(libraryList()->property("currentIndex").toInt(), 29);
    key(Qt::Key_PageUp);
    QTRY_VERIFY(find(QAccessible::ListItem, "video 22"));
    key(Qt::Key_Home);
    QTRY_VERIFY(find(QAccessible::ListItem, "video 0"));
}

void LibraryRowsTest::aRefreshKeepsPlaceAndCurrentRow() {
    const QList<LibraryRow> rows = sampleRows(100'000);
    m_presenter->setSelectedDevice(bedroom);
    m_presenter->setContent(contentOf(rows));
    QQuickItem* list = libraryList();
    QVERIFY(list);
    window()->grabWindow(); // lays everything out
    list->setProperty("currentIndex", 50'000);
    QTRY_VERIFY(find(QAccessible::ListItem, "video 50000"));
    const double place = list->property("contentY").toDouble();

    QList<LibraryRow> changed = rows;
    changed[49'999].group.title = QStringLiteral("renamed");
    m_presenter->setContent(contentOf(changed));
    QTRY_VERIFY(find(QAccessible::ListItem, "renamed"));
    QCOMPARE(list->property("contentY").toDouble(), place);
    QCOMPARE(list->property("currentIndex").toInt(), 50'000);

    const QRect onScreen = find(QAccessible::ListItem, "video 50000")->rect();
    changed.prepend(sampleRow(QStringLiteral("new.mkv"), QStringLiteral("new")));
    m_presenter->setContent(contentOf(changed));
    QTRY_COMPARE(list->property("currentIndex").toInt(), 50'001);
    QTRY_VERIFY(find(QAccessible::ListItem, "video 50000"));
    QCOMPARE(find(QAccessible::ListItem, "video 50000")->rect(), onScreen);
}

void LibraryRowsTest::scrollingFastFetchesFewPictures() {
    m_presenter->setSelectedDevice(bedroom);
    m_presenter->setThumbnails(ThumbnailAddress{QUrl(QStringLiteral("http://tv:1")), {}});
    m_presenter->setContent(contentOf(sampleRows(100'000)));
    QQuickItem* list = libraryList();
    QVERIFY(list);
    QTRY_VERIFY(m_ports.http.waiting() > 0);
    for (int step = 1; step <= 200; ++step) {
        list->setProperty("contentY", step * 20'000.5);
        window()->grabWindow(); // lays everything out
        QVERIFY(m_ports.http.waiting() <= 4);
    }
    QTRY_COMPARE(m_ports.http.waiting(), 4u);
    const QStringList shown = accessibleNames(window(), QAccessible::ListItem);
    for (const QUrl& url : m_ports.http.waitingUrls()) {
        const QString name = QUrlQuery(url).queryItemValue(QStringLiteral("name"));
        QVERIFY2(shown.contains(name.chopped(4)), qPrintable(name)); // without ".mkv"
    }
    m_presenter->library()->search(QStringLiteral("nothing like it"));
    QTRY_COMPARE(m_ports.http.waiting(), 0u);
}

void LibraryRowsTest::aDownloadIsChosenAndCancelled() {
    LibraryRow row = sampleRow(QStringLiteral("b.mkv"), QStringLiteral("B"));
    row.group.subtitles = {{QStringLiteral("A.srt"), QStringLiteral("subtitle"), 1, {}},
                           {QStringLiteral("c.nfo"), QStringLiteral("OTHER"), 1, {}}};
    m_presenter->setSelectedDevice(bedroom);
    m_presenter->setContent(contentOf({row}));
    m_actions.calls.clear();
    QTRY_VERIFY(find(QAccessible::Button, "Download"));
    QVERIFY(press(QAccessible::Button, "Download"));
    QTRY_VERIFY(find(QAccessible::Button, "A.srt"));
    QCOMPARE(m_presenter->library()->downloadMenu()->symbols(),
             QStringList({QStringLiteral("captions.bubble"), QStringLiteral("film"),
                          QStringLiteral("doc")}));
    key(Qt::Key_Down);
    key(Qt::Key_Return);
    QCOMPARE(m_actions.calls, QStringList(QStringLiteral("download b.mkv")));
    QTRY_VERIFY(!find(QAccessible::Button, "A.srt"));

    m_presenter->setDownload({true, 1.3, QStringLiteral("a (2).SRT")}); // one of the row's files
    QVERIFY(!find(QAccessible::Button, "Download"));
    QAccessibleInterface* progress = find(QAccessible::Button, "Cancel download");
    QVERIFY(progress);
    QCOMPARE(progress->text(QAccessible::Description), QStringLiteral("100%"));
    QVERIFY(press(QAccessible::Button, "Cancel download"));
    QCOMPARE(m_actions.calls.last(), QStringLiteral("cancel download"));
    m_presenter->setDownload({true, -0.2, QStringLiteral("other.mkv")});
    QVERIFY(find(QAccessible::Button, "Download"));
    m_presenter->setUploads({}, {uploadMatchKey(QStringLiteral("b.mkv"))});
    QVERIFY(!m_presenter->library()->offerDownloads(QStringLiteral("b.mkv")));
}

void LibraryRowsTest::aRowsControlsAskForIt() {
    m_presenter->setSelectedDevice(bedroom);
    LibraryContent content = contentOf(sampleRows(1));
    content.usbStorage = RemoteUsbStorage{{}, QStringLiteral("Drive"), true, 1, 1, 0, 0};
    m_presenter->setContent(content);
    QTRY_VERIFY(find(QAccessible::Button, "Play or pause"));
    QVERIFY(press(QAccessible::Button, "Play or pause"));
    QVERIFY(press(QAccessible::Button, "Move to USB"));
    QVERIFY(press(QAccessible::Button, "Delete"));
    QTRY_VERIFY(find(QAccessible::Heading, "Delete media from TV?"));
    key(Qt::Key_Escape);
    QTRY_VERIFY(!find(QAccessible::Heading, "Delete media from TV?"));
    QVERIFY(press(QAccessible::Button, "Delete"));
    QTRY_VERIFY(find(QAccessible::Heading, "Delete media from TV?"));
    key(Qt::Key_Tab); // from "Cancel"
    key(Qt::Key_Return);
    QCOMPARE(m_actions.calls, QStringList({QStringLiteral("toggle video 0.mkv"),
                                           QStringLiteral("move video 0.mkv to USB"),
                                           QStringLiteral("delete video 0")}));
}

void LibraryRowsTest::aRefreshOfThePlayerKeepsTheRows() {
    m_presenter->setSelectedDevice(bedroom);
    m_presenter->setContent(contentOf(sampleRows(50)));
    QTRY_VERIFY(find(QAccessible::ListItem, "video 3"));
    QObject* row = find(QAccessible::ListItem, "video 3")->object();
    m_presenter->setPlayback(playingVideo("video 3.mkv"));
    QTRY_VERIFY(shows(QStringLiteral("Playing")));
    m_presenter->setMove({true, 0.5, 1000, QStringLiteral("video 3.mkv")});
    QTRY_VERIFY(find(QAccessible::ProgressBar, "Move"));
    QCOMPARE(find(QAccessible::ListItem, "video 3")->object(), row);
}

QTEST_MAIN(LibraryRowsTest)
#include "library_rows_test.moc"
