#include "accessible_tree.h"
#include "fake_window_ports.h"
#include "recording_actions.h"
#include "sample_state.h"

#include "transfer/upload_names.h"
#include "ui/graphics_choice.h"
#include "ui/window_presenter.h"
#include "ui/window_view.h"

#include <QDesktopServices>
#include <QDropEvent>
#include <QGuiApplication>
#include <QMimeData>
#include <QPalette>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>
#include <QUrlQuery>

using namespace quiv;

namespace {

const TVEndpoint bedroom = sampleTv(QStringLiteral("Bedroom"), QStringLiteral("10.0.0.2"));
const TVEndpoint kitchen = sampleTv(QStringLiteral("Kitchen"), QStringLiteral("10.0.0.3"));

LibraryContent contentOf(QList<LibraryRow> rows) {
    LibraryContent content;
    content.groupedFiles = std::move(rows);
    return content;
}

PlaybackResponse playingVideo(const char* name = "a.mkv") {
    PlaybackResponse playback;
    playback.currentVideoName = QString::fromLatin1(name);
    playback.isPlaying = true;
    playback.durationMs = 7'200'000;
    return playback;
}

PairingState pairingRequired() {
    PairingState pairing;
    pairing.requiresControlPairing = true;
    return pairing;
}

} // namespace

// The real views, driven by what the model would tell, as a user and a screen reader meet them.
class WindowTest : public QObject {
    Q_OBJECT

public Q_SLOTS:
    void openAddress(const QUrl& address) { m_opened.append(address.toString()); }

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void init();
    void cleanup();

    void withoutATvItTellsHowToGetOne();
    void theLinkOpensThePageOfSupportedTvs();
    void controlsAreReachedByTheirLabels();
    void tvsAreSelectedByPointerKeyboardAndScreenReader();
    void typingSearches();
    void anotherTvClearsTheSearchField();
    void hostileTextIsShownAsItIs();
    void rowsAreReadOut();
    void theSheetTakesTheCode();
    void escapePutsTheSheetAwayOnly();
    void focusStaysInTheSheet();
    void arrowKeysWalkTheLibrary();
    void aRefreshKeepsPlaceAndCurrentRow();
    void scrollingFastFetchesFewPictures();
    void aDownloadIsChosenAndCancelled();
    void draggingTheKnobSeeksOnce();
    void menusTakeTheKeyboard();
    void aRowsControlsAskForIt();
    void aRefreshOfThePlayerKeepsTheRows();
    void filesDroppedOnTheWindowAreUploaded();
    void coloursFollowTheDesktop();
    void anEmulatedOpenGlIsNotUsed();

private:
    QQuickWindow* window() const { return m_view->window(); }
    QAccessibleInterface* find(QAccessible::Role role, const char* name) const {
        return findAccessible(window(), role, QString::fromUtf8(name));
    }
    bool press(QAccessible::Role role, const char* name) const {
        return pressAccessible(window(), role, QString::fromUtf8(name));
    }
    bool shows(const QString& text) const {
        return findAccessible(window(), QAccessible::StaticText, text) != nullptr;
    }
    void click(QAccessible::Role role, const char* name) const;
    void typeText(const QString& text) const;
    void key(Qt::Key key) const { QTest::keyClick(window(), key); }
    QQuickItem* libraryList() const;

    RecordingActions m_actions;
    FakeWindowPorts m_ports;
    QStringList m_opened;
    std::unique_ptr<WindowPresenter> m_presenter;
    std::unique_ptr<WindowView> m_view;
};

void WindowTest::initTestCase() {
    chooseGraphics();
    QAccessible::setActive(true);
    QDesktopServices::setUrlHandler(QStringLiteral("https"), this, "openAddress");
}

void WindowTest::cleanupTestCase() {
    QDesktopServices::unsetUrlHandler(QStringLiteral("https"));
}

void WindowTest::init() {
    QTest::failOnWarning(QRegularExpression(QStringLiteral("qrc:|qml")));
    m_actions.calls.clear();
    m_presenter = std::make_unique<WindowPresenter>(m_actions, m_ports.ports);
    m_view = std::make_unique<WindowView>(*m_presenter);
    QVERIFY(window());
    window()->show();
    QVERIFY(QTest::qWaitForWindowActive(window()));
}

void WindowTest::cleanup() {
    m_view.reset();
    m_presenter.reset();
}

void WindowTest::click(QAccessible::Role role, const char* name) const {
    QAccessibleInterface* element = find(role, name);
    QVERIFY(element);
    const QPoint middle = element->rect().center();
    QTest::mouseClick(window(), Qt::LeftButton, {}, window()->mapFromGlobal(middle));
}

void WindowTest::typeText(const QString& text) const {
    for (const QChar character : text)
        QTest::keyClick(window(), character.toLatin1());
}

QQuickItem* WindowTest::libraryList() const {
    QAccessibleInterface* list = find(QAccessible::List, "Library");
    return list ? qobject_cast<QQuickItem*>(list->object()) : nullptr;
}

void WindowTest::withoutATvItTellsHowToGetOne() {
    for (const char* text :
         {"No TV Selected", "Quiv TV app is required to connect.",
          "Install Quiv on your TV using one of these options, then select the discovered TV from "
          "the sidebar.",
          "Option 1", "Search for \"Quiv\" on your TV and install it. ", "Option 2",
          "Google Play link unavailable", "Open Google Play, choose your TV, and install Quiv.",
          "Your Mac and TV must be connected to the same local network.", "Found 0 TVs"})
        QVERIFY2(shows(QString::fromUtf8(text)), text);
    QVERIFY(!shows(QStringLiteral("Uploads: INTERNAL")));

    m_presenter->setSelectedDevice(bedroom);
    QVERIFY(!shows(QStringLiteral("No TV Selected")));
    QVERIFY(shows(QStringLiteral("No media files yet")));
    QVERIFY(shows(QStringLiteral("Uploads: INTERNAL")));
}

void WindowTest::theLinkOpensThePageOfSupportedTvs() {
    m_opened.clear();
    QVERIFY(press(QAccessible::Link, "[Click here to see the supported platforms.]"));
    QCOMPARE(m_opened.size(), 1);
    QVERIFY(m_opened.constFirst().startsWith(QStringLiteral("https://")));
}

void WindowTest::controlsAreReachedByTheirLabels() {
    m_presenter->setSelectedDevice(bedroom);
    m_presenter->setPairing(pairingRequired());
    m_presenter->pairingSheet()->dismiss();
    QVERIFY(press(QAccessible::Button, "Refresh"));
    QVERIFY(press(QAccessible::Button, "Cancel pairing"));
    QCOMPARE(m_actions.calls,
             QStringList({QStringLiteral("refresh"), QStringLiteral("cancel pairing")}));
    QVERIFY(press(QAccessible::Button, "Enter pairing code"));
    QVERIFY(m_presenter->pairingSheet()->state().isShown);
    QVERIFY(find(QAccessible::EditableText, "Search files on this TV"));
    QVERIFY(find(QAccessible::EditableText, "3-digit code"));
    QVERIFY(shows(QStringLiteral("Pairing required for control actions")));
}

void WindowTest::tvsAreSelectedByPointerKeyboardAndScreenReader() {
    m_presenter->setDiscoveredDevices({bedroom, kitchen});
    QTRY_VERIFY(find(QAccessible::Button, "Kitchen"));
    click(QAccessible::Button, "Kitchen");
    QVERIFY(press(QAccessible::Button, "Bedroom"));
    QCOMPARE(m_actions.calls, QStringList({QStringLiteral("select 10.0.0.3:8080"),
                                           QStringLiteral("select 10.0.0.2:8080")}));
    m_actions.calls.clear();
    key(Qt::Key_Up); // the click has brought the focus here
    key(Qt::Key_Space);
    key(Qt::Key_Down);
    key(Qt::Key_Return);
    QCOMPARE(m_actions.calls, QStringList({QStringLiteral("select 10.0.0.2:8080"),
                                           QStringLiteral("select 10.0.0.3:8080")}));
    m_presenter->setSelectedDevice(kitchen);
    QVERIFY(find(QAccessible::Button, "Kitchen")->state().selected);
    QVERIFY(!find(QAccessible::Button, "Bedroom")->state().selected);
}

void WindowTest::typingSearches() {
    m_presenter->setSelectedDevice(bedroom);
    m_presenter->setContent(contentOf(sampleRows(30)));
    click(QAccessible::EditableText, "Search files on this TV");
    typeText(QStringLiteral("video 17"));
    QCOMPARE(m_presenter->library()->searchText(), QStringLiteral("video 17"));
    QTRY_COMPARE(accessibleNames(window(), QAccessible::ListItem),
                 QStringList(QStringLiteral("video 17")));
    QVERIFY(press(QAccessible::Button, "Clear search"));
    QCOMPARE(m_presenter->library()->searchText(), QString());
}

void WindowTest::anotherTvClearsTheSearchField() {
    m_presenter->setSelectedDevice(bedroom);
    click(QAccessible::EditableText, "Search files on this TV");
    typeText(QStringLiteral("x"));
    m_presenter->setSelectedDevice(kitchen);
    QAccessibleInterface* field = find(QAccessible::EditableText, "Search files on this TV");
    QCOMPARE(field->text(QAccessible::Value), QString());
    typeText(QStringLiteral("y")); // still bound
    QCOMPARE(m_presenter->library()->searchText(), QStringLiteral("y"));
}

void WindowTest::hostileTextIsShownAsItIs() {
    const QString hostile = QStringLiteral("<b>x</b><img src='http://10.0.0.9/x.png'>");
    const TVEndpoint tv = sampleTv(hostile, QStringLiteral("h"));
    m_presenter->setDiscoveredDevices({tv});
    m_presenter->setSelectedDevice(tv);
    LibraryContent content = contentOf({sampleRow(hostile, hostile)});
    content.usbSetupHint = hostile;
    m_presenter->setContent(content);
    m_presenter->setStatusMessage(hostile);
    QTRY_COMPARE(accessibleNames(window(), QAccessible::StaticText).count(hostile), 4);
    QList<QQuickItem*> texts = window()->contentItem()->findChildren<QQuickItem*>();
    texts.removeIf([](QQuickItem* item) { return !item->inherits("QQuickText"); });
    QVERIFY(texts.size() > 5);
    for (const QQuickItem* text : texts)
        QCOMPARE(text->property("textFormat").toInt(), int(Qt::PlainText));
}

void WindowTest::rowsAreReadOut() {
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

void WindowTest::theSheetTakesTheCode() {
    m_presenter->setSelectedDevice(bedroom);
    m_presenter->setPairing(pairingRequired());
    QTRY_VERIFY(find(QAccessible::EditableText, "3-digit code"));
    typeText(QStringLiteral("12")); // the field has the focus by itself
    press(QAccessible::Button, "Verify code");
    QVERIFY(m_actions.calls.isEmpty());
    typeText(QStringLiteral("3"));
    key(Qt::Key_Return); // nothing special
    QVERIFY(m_actions.calls.isEmpty());
    QVERIFY(press(QAccessible::Button, "Verify code"));
    QCOMPARE(m_actions.calls, QStringList(QStringLiteral("verify 123")));

    m_presenter->setPairing({});
    QTRY_VERIFY(!find(QAccessible::Button, "Verify code"));
}

void WindowTest::escapePutsTheSheetAwayOnly() {
    m_presenter->setSelectedDevice(bedroom);
    m_presenter->setPairing(pairingRequired());
    QTRY_VERIFY(find(QAccessible::EditableText, "3-digit code"));
    key(Qt::Key_Escape);
    QVERIFY(!m_presenter->pairingSheet()->state().isShown);
    QTRY_VERIFY(!find(QAccessible::EditableText, "3-digit code"));
    QVERIFY(m_actions.calls.isEmpty());
    click(QAccessible::Button, "Enter pairing code");
    QTRY_VERIFY(find(QAccessible::EditableText, "3-digit code"));
}

void WindowTest::focusStaysInTheSheet() {
    m_presenter->setSelectedDevice(bedroom);
    m_presenter->setPairing(pairingRequired());
    QTRY_VERIFY(find(QAccessible::EditableText, "3-digit code"));
    m_presenter->pairingSheet()->type(QStringLiteral("123"));
    QStringList visited;
    for (int step = 0; step < 4; ++step) {
        auto* focus = QAccessible::queryAccessibleInterface(window()->activeFocusItem());
        QVERIFY(focus);
        visited.append(focus->text(QAccessible::Name));
        key(Qt::Key_Tab);
    }
    QCOMPARE(visited,
             QStringList({QStringLiteral("3-digit code"), QStringLiteral("Verify code"),
                          QStringLiteral("Cancel pairing"), QStringLiteral("3-digit code")}));
}

void WindowTest::arrowKeysWalkTheLibrary() {
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

void WindowTest::aRefreshKeepsPlaceAndCurrentRow() {
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

void WindowTest::scrollingFastFetchesFewPictures() {
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

void WindowTest::aDownloadIsChosenAndCancelled() {
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

void WindowTest::draggingTheKnobSeeksOnce() {
    m_presenter->setSelectedDevice(bedroom);
    m_presenter->setPlayback(playingVideo());
    QTRY_VERIFY(find(QAccessible::Slider, "Position"));
    QTRY_VERIFY(find(QAccessible::Slider, "Position")->rect().width() > 200); // laid out
    const QRect slider = find(QAccessible::Slider, "Position")->rect();
    const auto at = [&](double share) {
        const QPoint place(slider.left() + static_cast<int>(slider.width() * share),
                           slider.center().y());
        return window()->mapFromGlobal(place);
    };
    QTest::mousePress(window(), Qt::LeftButton, {}, at(0.1));
    for (const double share : {0.2, 0.3, 0.5})
        QTest::mouseMove(window(), at(share));
    m_presenter->setPlayback(playingVideo()); // a reading in between
    QTest::mouseRelease(window(), Qt::LeftButton, {}, at(0.5));
    QCOMPARE(m_actions.calls.size(), 1);
    const qint64 target = m_actions.calls.first().section(u' ', 1).toLongLong();
    QVERIFY2(std::abs(target - 3'600'000) < 30'000, qPrintable(m_actions.calls.first()));
    QVERIFY(std::abs(m_presenter->dock()->timeline().fraction - 0.5) < 0.01);
    key(Qt::Key_Tab); // the slider can have the keyboard, too
    QVERIFY(press(QAccessible::Button, "Forward 10 seconds"));
    QCOMPARE(m_actions.calls.last(), QStringLiteral("seek_by 10000"));
}

void WindowTest::menusTakeTheKeyboard() {
    m_presenter->setSelectedDevice(bedroom);
    PlaybackResponse playback = playingVideo();
    playback.subtitleTracks =
        QList<PlaybackTrack>(500, {QStringLiteral("7"), QStringLiteral("<img src=x>"), {}, false});
    m_presenter->setPlayback(playback);
    QTRY_VERIFY(find(QAccessible::Button, "Subtitle"));
    QVERIFY(press(QAccessible::Button, "Subtitle"));
    QTRY_VERIFY(find(QAccessible::Button, "Off"));
    key(Qt::Key_Down);
    key(Qt::Key_Return);
    QTRY_VERIFY(!find(QAccessible::Button, "Off"));
    QCOMPARE(m_actions.calls, QStringList(QStringLiteral("set_subtitle 7")));
    QCOMPARE(find(QAccessible::Button, "Subtitle")->text(QAccessible::Description),
             QStringLiteral("Off")); // the TV has not said so
    QTRY_VERIFY(find(QAccessible::Button, "Subtitle"));
    QVERIFY(press(QAccessible::Button, "Subtitle"));
    QTRY_VERIFY(find(QAccessible::Button, "Off"));
    key(Qt::Key_Escape);
    QTRY_VERIFY(!find(QAccessible::Button, "Off"));
    QCOMPARE(m_actions.calls.size(), 1);
    QVERIFY(shows(QStringLiteral("n/a")));
}

void WindowTest::aRowsControlsAskForIt() {
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

void WindowTest::aRefreshOfThePlayerKeepsTheRows() {
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

void WindowTest::filesDroppedOnTheWindowAreUploaded() {
    m_presenter->setSelectedDevice(bedroom);
    QMimeData files;
    files.setUrls(
        {QUrl(QStringLiteral("file:///v/a.mkv")), QUrl(QStringLiteral("file:///v/b.srt"))});
    const QPoint place(800, 400);
    QDragEnterEvent enter(place, Qt::CopyAction, &files, Qt::LeftButton, {});
    QCoreApplication::sendEvent(window(), &enter);
    QTRY_VERIFY(shows(QStringLiteral("Drop video files to upload")));
    QDropEvent drop(place, Qt::CopyAction, &files, Qt::LeftButton, {});
    QCoreApplication::sendEvent(window(), &drop);
    QVERIFY(drop.isAccepted());
    QCOMPARE(m_actions.calls,
             QStringList({QStringLiteral("upload a.mkv"), QStringLiteral("upload b.srt")}));
    QTRY_VERIFY(!shows(QStringLiteral("Drop video files to upload")));

    m_presenter->setUploads({{QStringLiteral("1"), QStringLiteral("a.mkv"),
                              UploadListItemState::Uploading, 0.5, 1'000'000},
                             {QStringLiteral("2"), QStringLiteral("b.srt")}},
                            {});
    QTRY_VERIFY(find(QAccessible::ListItem, "b.srt"));
    QVERIFY(shows(QStringLiteral("Uploading  50%  1 MB/s")));
    m_actions.calls.clear();
    QVERIFY(press(QAccessible::Button, "Remove"));
    QVERIFY(press(QAccessible::Button, "Cancel"));
    QCOMPARE(m_actions.calls,
             QStringList({QStringLiteral("cancel upload 2"), QStringLiteral("cancel upload 1")}));
}

void WindowTest::coloursFollowTheDesktop() {
    const auto corner = [this] {
        return window()->grabWindow().pixelColor(2, 2).lightness();
    };
    const QPalette before = QGuiApplication::palette();
    QGuiApplication::setPalette(QPalette(QColor(0x20, 0x20, 0x20)));
    QTRY_VERIFY(corner() < 60);
    QGuiApplication::setPalette(QPalette(QColor(0xf0, 0xf0, 0xf0)));
    QTRY_VERIFY(corner() > 200);
    QGuiApplication::setPalette(before);
}

void WindowTest::anEmulatedOpenGlIsNotUsed() {
    QVERIFY(isSoftwareRasteriser("llvmpipe (LLVM 15.0.6, 256 bits)"));
    QVERIFY(isSoftwareRasteriser("Software Rasterizer"));
    QVERIFY(!isSoftwareRasteriser("Mesa Intel(R) UHD Graphics 620 (KBL GT2)"));
}

QTEST_MAIN(WindowTest)
#include "window_test.moc"
