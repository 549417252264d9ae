#include "window_fixture.h"

#include "support/test_main.h"
#include "transfer/upload_names.h"

#include <QTest>
#include <QUrlQuery>

using namespace Qt::StringLiterals;
using namespace quiv;

// The library's rows in the real window: reading, walking, scrolling, acting on them.
class LibraryRowsTest : public QObject, protected WindowFixture {
    Q_OBJECT

private Q_SLOTS:
    void init() { open(); }
    void cleanup() { close(); }

    void rowsAreReadOut() {
        LibraryRow row = sampleRow(u"a.mkv"_s, u"Glacier Road"_s);
        row.group.reportedSubtitleCount = 2;
        row.storageLocation = u"USB"_s;
        showRows({row});
        QTRY_VERIFY(find(QAccessible::ListItem, "Glacier Road"));
        QCOMPARE(find(QAccessible::ListItem, "Glacier Road")->text(QAccessible::Description),
                 u"2 subtitles"_s);
        QVERIFY(shows(u"2 subtitles"_s));
        QVERIFY(shows(u"USB"_s));
    }

    void arrowKeysWalkTheLibrary() {
        showRows(sampleRows(30));
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

    void aRefreshKeepsPlaceAndCurrentRow() {
        const QList<LibraryRow> rows = sampleRows(100'000);
        showRows(rows);
        QQuickItem* list = libraryList();
        QVERIFY(list);
        window()->grabWindow(); // lays everything out
        list->setProperty("currentIndex", 50'000);
        QTRY_VERIFY(find(QAccessible::ListItem, "video 50000"));
        const double place = list->property("contentY").toDouble();

        QList<LibraryRow> changed = rows;
        changed[49'999].group.title = u"renamed"_s;
        showRows(changed);
        QTRY_VERIFY(find(QAccessible::ListItem, "renamed"));
        QCOMPARE(list->property("contentY").toDouble(), place);
        QCOMPARE(list->property("currentIndex").toInt(), 50'000);

        const QRect onScreen = find(QAccessible::ListItem, "video 50000")->rect();
        changed.prepend(sampleRow(u"new.mkv"_s, u"new"_s));
        showRows(changed);
        QTRY_COMPARE(list->property("currentIndex").toInt(), 50'001);
        QTRY_VERIFY(find(QAccessible::ListItem, "video 50000"));
        QCOMPARE(find(QAccessible::ListItem, "video 50000")->rect(), onScreen);
    }

    void scrollingFastFetchesFewPictures() {
        m_state.thumbnails = ThumbnailAddress{QUrl(u"http://tv:1"_s), {}};
        showRows(sampleRows(100'000));
        QQuickItem* list = libraryList();
        QVERIFY(list);
        QTRY_VERIFY(m_ports.http.waiting() > 0);
        for (int step = 1; step <= 50; ++step) {
            list->setProperty("contentY", step * 80'000.5);
            window()->grabWindow(); // lays everything out
            QVERIFY(m_ports.http.waiting() <= 4);
        }
        QTRY_COMPARE(m_ports.http.waiting(), 4u);
        const QStringList shown = accessibleNames(window(), QAccessible::ListItem);
        for (const QUrl& url : m_ports.http.waitingUrls()) {
            const QString name = QUrlQuery(url).queryItemValue(u"name"_s);
            QVERIFY2(shown.contains(name.chopped(4)), qPrintable(name)); // without ".mkv"
        }
        m_presenter->library()->search(u"nothing like it"_s);
        QTRY_COMPARE(m_ports.http.waiting(), 0u);
    }

    void aDownloadIsChosenAndCancelled() {
        LibraryRow row = sampleRow(u"b.mkv"_s, u"B"_s);
        row.group.subtitles = {{u"A.srt"_s, u"subtitle"_s, 1, {}}, {u"c.nfo"_s, u"OTHER"_s, 1, {}}};
        showRows({row});
        QTRY_VERIFY(find(QAccessible::Button, "Download"));
        QVERIFY(press(QAccessible::Button, "Download"));
        QTRY_VERIFY(find(QAccessible::Button, "A.srt"));
        QCOMPARE(m_presenter->library()->menu()->symbols(),
                 QStringList({u"captions.bubble"_s, u"film"_s, u"doc"_s}));
        key(Qt::Key_Down);
        key(Qt::Key_Return);
        QCOMPARE(m_actions.calls, QStringList(u"download b.mkv"_s));
        QTRY_VERIFY(!find(QAccessible::Button, "A.srt"));

        const QString tv = endpointKey(*m_state.selectedDevice);
        m_state.download = {true, 1.3, u"a (2).SRT"_s, tv, {}};
        tell(); // one of the row's files
        QVERIFY(!find(QAccessible::Button, "Download"));
        QAccessibleInterface* progress = find(QAccessible::Button, "Cancel download");
        QVERIFY(progress);
        QCOMPARE(progress->text(QAccessible::Description), u"100%"_s);
        QVERIFY(press(QAccessible::Button, "Cancel download"));
        QCOMPARE(m_actions.calls.last(), u"cancel download"_s);
        m_state.download = {true, -0.2, u"other.mkv"_s, tv, {}};
        tell();
        QVERIFY(find(QAccessible::Button, "Download"));
        m_state.uploads = {sampleUpload(u"1"_s, u"b.mkv"_s, *m_state.selectedDevice)};
        tell();
        QVERIFY(!m_presenter->library()->offerDownloads(u"b.mkv"_s));
    }

    void aRowsControlsAskForIt() {
        m_state.content.usbStorage = RemoteUsbStorage{{}, u"Drive"_s, true, 1, 1, 0, 0};
        showRows(sampleRows(1));
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
        QCOMPARE(m_actions.calls, QStringList({u"play video 0.mkv as video 0"_s,
                                               u"move video 0.mkv to USB"_s, u"delete video 0"_s}));
    }

    void aRefreshOfThePlayerKeepsTheRows() {
        showRows(sampleRows(50));
        QTRY_VERIFY(find(QAccessible::ListItem, "video 3"));
        QObject* row = find(QAccessible::ListItem, "video 3")->object();
        read(playingVideo("video 3.mkv"));
        QTRY_VERIFY(shows(u"Playing"_s));
        m_state.move = {true, 0.5, 1000, u"video 3.mkv"_s};
        tell();
        QTRY_VERIFY(find(QAccessible::ProgressBar, "Move"));
        QCOMPARE(find(QAccessible::ListItem, "video 3")->object(), row);
    }
};

static const quiv::TestCase<LibraryRowsTest> registered;
#include "library_rows_test.moc"
