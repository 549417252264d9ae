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
        QTRY_VERIFY(find(QAccessible::ListItem, "video 0"));
        libraryList()->forceActiveFocus(Qt::TabFocusReason);
        for (int step = 0; step < 20; ++step)
            key(Qt::Key_Down);
        QTRY_VERIFY(find(QAccessible::ListItem, "video 20")->state().selected);
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
        QTRY_VERIFY(libraryList()); // a long list is compared in the background
        QQuickItem* list = libraryList();
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
        QTRY_VERIFY(libraryList());
        QQuickItem* list = libraryList();
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
        QTRY_VERIFY(find(QAccessible::MenuItem, "A.srt"));
        QCOMPARE(m_presenter->library()->menu()->symbols(),
                 QStringList({u"captions.bubble"_s, u"film"_s, u"doc"_s}));
        key(Qt::Key_Down);
        key(Qt::Key_Return);
        QCOMPARE(m_actions.calls, QStringList(u"download b.mkv"_s));
        QTRY_VERIFY(!find(QAccessible::MenuItem, "A.srt"));

        const QString tv = endpointKey(*m_state.selectedDevice);
        m_state.download = {true, 1.3, u"a (2).SRT"_s, tv, {}};
        tell(); // one of the row's files
        QVERIFY(!find(QAccessible::Button, "Download"));
        QAccessibleInterface* progress = find(QAccessible::Button, "Cancel download");
        QVERIFY(progress);
        QCOMPARE(progress->text(QAccessible::Description), u"100%"_s);
        QVERIFY(press(QAccessible::Button, "Cancel download"));
        QCOMPARE(m_actions.calls.last(), u"cancel download"_s);
        m_actions.calls.clear();
        auto* finger = QTest::createTouchDevice();
        const int end = window()->geometry().right() - 50; // where "Delete" follows
        QTRY_VERIFY(progress->rect().right() < end);       // laid out
        const QPoint place = placeOf(progress);
        const auto tap = [&] {
            QTest::touchEvent(window(), finger).press(0, place);
            QTest::touchEvent(window(), finger).release(0, place);
        };
        tap(); // shows what the next one does
        QTRY_VERIFY(progress->object()->property("offersCancel").toBool());
        QVERIFY(m_actions.calls.isEmpty());
        tap();
        QTRY_COMPARE(m_actions.calls, QStringList(u"cancel download"_s));
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

    // The row with the focus in it is the one that keys act on, however it got there.
    void keysActOnTheMarkedRow() {
        showRows(sampleRows(3));
        QTRY_VERIFY(find(QAccessible::ListItem, "video 2"));
        libraryList()->forceActiveFocus(Qt::TabFocusReason);
        const QList<QAccessibleInterface*> buttons = findAll(QAccessible::Button, "Delete");
        QCOMPARE(buttons.size(), 3);
        clickOn(buttons[2]);
        QTRY_VERIFY(m_presenter->deletePrompt()->isShown());
        key(Qt::Key_Return); // "Cancel"
        QTRY_COMPARE(focusedName(), u"Delete"_s);
        key(Qt::Key_Delete);
        QTRY_COMPARE(focusedName(), u"Cancel"_s);
        key(Qt::Key_Tab);
        key(Qt::Key_Return);
        QCOMPARE(std::exchange(m_actions.calls, {}), QStringList(u"delete video 2"_s));
        QTRY_COMPARE(focusedName(), u"Delete"_s);
        key(Qt::Key_Up);
        QCOMPARE(focusedName(), u"video 1"_s);
        for (const char* name : {"Play or pause", "Subtitle", "Download", "Delete", "Delete"}) {
            key(Qt::Key_Right);
            QCOMPARE(focusedName(), QString::fromLatin1(name));
        }
        key(Qt::Key_Up); // to the row, not to its button
        QCOMPARE(focusedName(), u"video 0"_s);
        key(Qt::Key_Tab);
        key(Qt::Key_Left);
        QCOMPARE(focusedName(), u"video 0"_s);
        typeText(u"VIDEO 2"_s);
        QCOMPARE(focusedName(), u"video 2"_s);
        key(Qt::Key_Return);
        QCOMPARE(m_actions.calls, QStringList(u"play video 2.mkv as video 2"_s));
    }

    void severalRowsAreDeletedAtOnce() {
        showRows(sampleRows(4));
        QTRY_VERIFY(find(QAccessible::ListItem, "video 3"));
        click(QAccessible::ListItem, "video 1");
        QTest::keyClick(window(), Qt::Key_Down, Qt::ShiftModifier);
        QTest::mouseClick(window(), Qt::LeftButton, Qt::ControlModifier,
                          placeOf(find(QAccessible::ListItem, "video 0")));
        key(Qt::Key_Delete);
        QTRY_COMPARE(focusedName(), u"Cancel"_s);
        key(Qt::Key_Tab);
        key(Qt::Key_Return);
        QCOMPARE(m_actions.calls, QStringList(u"delete video 0, video 1, video 2"_s));
        m_actions.calls.clear();
        QTRY_VERIFY(!find(QAccessible::Heading, "Delete media from TV?"));
        QTest::keyClick(window(), Qt::Key_A, Qt::ControlModifier);
        QTest::mouseClick(window(), Qt::RightButton, {},
                          placeOf(find(QAccessible::ListItem, "video 3")));
        QTRY_VERIFY(find(QAccessible::MenuItem, "Delete 4 Titles..."));
        QVERIFY(press(QAccessible::MenuItem, "Download 4 Titles..."));
        QCOMPARE(m_actions.calls,
                 QStringList(u"download video 0.mkv, video 1.mkv, video 2.mkv, video 3.mkv"_s));
    }

    void aMenuOffersWhatTheRowCanDo() {
        showRows(sampleRows(2));
        QTRY_VERIFY(find(QAccessible::ListItem, "video 1"));
        click(QAccessible::ListItem, "video 1");
        key(Qt::Key_Menu);
        QTRY_VERIFY(find(QAccessible::PopupMenu, "video 1"));
        QCOMPARE(find(QAccessible::MenuItem, "Move to USB")->text(QAccessible::Description),
                 u"Not available"_s);
        for (const Qt::Key step : {Qt::Key_Down, Qt::Key_Return}) // there is no drive
            key(step);
        QVERIFY(m_actions.calls.isEmpty());
        key(Qt::Key_Down);
        key(Qt::Key_Down);
        key(Qt::Key_Return);
        QCOMPARE(m_actions.calls, QStringList(u"download video 1.mkv"_s));
        QTRY_COMPARE(focusedName(), u"video 1"_s);
    }

    void theQueueScrollsWithTheLibrary() {
        m_state.uploads = {sampleUpload(u"1"_s, u"a.mkv"_s, Bedroom)};
        showRows(sampleRows(100));
        QTRY_VERIFY(find(QAccessible::ListItem, "a.mkv"));
        QTRY_VERIFY(find(QAccessible::ListItem, "video 0"));
        QAccessibleInterface* bar = find(QAccessible::ProgressBar, "a.mkv");
        QVERIFY(bar);
        const auto* segment = bar->object()->findChild<QQuickItem*>(u"segment"_s);
        QVERIFY(segment);
        const double begin = segment->x();
        QTRY_VERIFY(segment->x() != begin); // it moves while the file waits

        libraryList()->forceActiveFocus(Qt::TabFocusReason);
        key(Qt::Key_Home);
        key(Qt::Key_Right);
        QCOMPARE(focusedName(), u"Remove"_s);
        key(Qt::Key_Return);
        QCOMPARE(m_actions.calls, QStringList(u"cancel upload 1"_s));
        key(Qt::Key_End);
        QTRY_VERIFY(find(QAccessible::ListItem, "video 95"));
        const QRect place = find(QAccessible::ListItem, "video 95")->rect();
        for (const char* id : {"2", "3"}) {
            m_state.uploads.append(
                sampleUpload(QString::fromLatin1(id), u"b.mkv"_s, *m_state.selectedDevice));
            tell();
        }
        QTRY_COMPARE(find(QAccessible::ListItem, "video 95")->rect(), place);
        m_state.uploads = {};
        tell();
        QTRY_COMPARE(find(QAccessible::ListItem, "video 95")->rect(), place);
        QCOMPARE(focusedName(), u"video 99"_s);
        m_presenter->library()->search(u"video 1"_s);
        QTRY_VERIFY(find(QAccessible::ListItem, "video 1")); // from the top
        QVERIFY(shows(u"Found 11 titles"_s));
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
