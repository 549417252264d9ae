#include "window_fixture.h"

#include "support/test_main.h"
#include "ui/window/graphics_choice.h"

#include <QDesktopServices>
#include <QDropEvent>
#include <QGuiApplication>
#include <QMimeData>
#include <QPalette>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace quiv;

// The real views, driven by what the model would tell, as a user and a screen reader meet them.
class WindowTest : public QObject, protected WindowFixture {
    Q_OBJECT

public Q_SLOTS:
    void openAddress(const QUrl& address) { m_opened.append(address.toString()); }

private Q_SLOTS:
    void initTestCase() { QDesktopServices::setUrlHandler(u"https"_s, this, "openAddress"); }

    void cleanupTestCase() { QDesktopServices::unsetUrlHandler(u"https"_s); }

    void init() { open(); }
    void cleanup() { close(); }

    void withoutATvItTellsHowToGetOne() {
        m_state.isSearching = true;
        tell();
        QVERIFY(shows(u"Searching for TVs in your network..."_s));
        QVERIFY(!shows(u"Option 1"_s));
        m_state.networkProblem = {u"No network"_s, u"Plug it in."_s};
        tell();
        for (const QString& text : {u"No network"_s, u"Plug it in."_s, u"Option 1"_s})
            QVERIFY2(shows(text), qPrintable(text));
        m_state.isSearching = false;
        m_state.networkProblem = {};
        tell();
        QVERIFY(!shows(u"Plug it in."_s));
        for (const char* text :
             {"No TV Selected", "Quiv TV app is required to connect.",
              "Install Quiv on your TV using one of these options, then select the discovered TV "
              "from "
              "the sidebar.",
              "Option 1", "Search for \"Quiv\" on your TV and install it. ", "Option 2",
              "Google Play link unavailable", "Open Google Play, choose your TV, and install Quiv.",
              "Your Mac and TV must be connected to the same local network.", "Found 0 TVs"})
            QVERIFY2(shows(QString::fromUtf8(text)), text);
        QVERIFY(!shows(u"Uploads: INTERNAL"_s));

        select(Bedroom);
        QVERIFY(!shows(u"No TV Selected"_s));
        QVERIFY(shows(u"No media files yet"_s));
        QVERIFY(shows(u"Uploads: INTERNAL"_s));
    }

    void anAddressThatIsGivenIsOpened() {
        QVERIFY(!find(QAccessible::Link, "[Click here to see the supported platforms.]"));
        NoTvPresenter known({u"https://a.example/tvs"_s, u"https://a.example/app"_s});
        window()->findChild<QQuickItem*>(u"noTv"_s)->setProperty("presenter",
                                                                 QVariant::fromValue(&known));
        m_opened.clear();
        QTRY_VERIFY(find(QAccessible::Link, "[Click here to see the supported platforms.]"));
        QVERIFY(press(QAccessible::Link, "[Click here to see the supported platforms.]"));
        QVERIFY(press(QAccessible::Button, "Open Google Play"));
        QCOMPARE(m_opened, QStringList({u"https://a.example/tvs"_s, u"https://a.example/app"_s}));
        close();
    }

    void controlsAreReachedByTheirLabels() {
        requirePairing();
        m_presenter->pairingSheet()->dismiss();
        QVERIFY(press(QAccessible::Button, "Refresh"));
        QVERIFY(press(QAccessible::Button, "Cancel pairing"));
        QCOMPARE(m_actions.calls, QStringList({u"refresh"_s, u"cancel pairing"_s}));
        QVERIFY(press(QAccessible::Button, "Enter pairing code"));
        QVERIFY(m_presenter->pairingSheet()->state().isShown);
        QVERIFY(find(QAccessible::EditableText, "Search files on this TV"));
        QTRY_VERIFY(find(QAccessible::EditableText, "3-digit code"));
        QVERIFY(shows(u"Pairing required for control actions"_s));
    }

    void tvsAreSelectedByPointerKeyboardAndScreenReader() {
        m_state.discoveredDevices = {Bedroom, Kitchen};
        tell();
        QTRY_VERIFY(find(QAccessible::Button, "Kitchen"));
        click(QAccessible::Button, "Kitchen");
        QVERIFY(press(QAccessible::Button, "Bedroom"));
        QCOMPARE(m_actions.calls,
                 QStringList({u"select 10.0.0.3:8080"_s, u"select 10.0.0.2:8080"_s}));
        m_actions.calls.clear();
        key(Qt::Key_Up); // the click has brought the focus here
        key(Qt::Key_Space);
        key(Qt::Key_Down);
        key(Qt::Key_Return);
        QCOMPARE(m_actions.calls,
                 QStringList({u"select 10.0.0.2:8080"_s, u"select 10.0.0.3:8080"_s}));
        select(Kitchen);
        QVERIFY(find(QAccessible::Button, "Kitchen")->state().selected);
        QVERIFY(!find(QAccessible::Button, "Bedroom")->state().selected);
    }

    void typingSearches() {
        showRows(sampleRows(30));
        click(QAccessible::EditableText, "Search files on this TV");
        typeText(u"video 17"_s);
        QCOMPARE(m_presenter->library()->searchText(), u"video 17"_s);
        QTRY_COMPARE(accessibleNames(window(), QAccessible::ListItem), QStringList(u"video 17"_s));
        QVERIFY(press(QAccessible::Button, "Clear search"));
        QCOMPARE(m_presenter->library()->searchText(), QString());
    }

    void keysWorkAnywhereButInADialog() {
        showRows(sampleRows(30));
        read(playingVideo("video 3.mkv"));
        QTest::keyClick(window(), Qt::Key_O, Qt::ControlModifier);
        QTRY_VERIFY(m_presenter->fileChooser()->isShown());
        key(Qt::Key_F5);
        m_presenter->fileChooser()->cancel();
        QCOMPARE(m_actions.calls, QStringList());
        QTRY_VERIFY(!find(QAccessible::Heading, "Upload to the TV"));
        key(Qt::Key_F5);
        key(Qt::Key_Space);
        QCOMPARE(m_actions.calls, QStringList({u"refresh"_s, u"toggle video 3.mkv"_s}));
        QTest::keyClick(window(), Qt::Key_F, Qt::ControlModifier);
        typeText(u"video 1 /"_s); // a blank and a slash are typed here
        QCOMPARE(m_presenter->library()->searchText(), u"video 1 /"_s);
        key(Qt::Key_Backspace);
        key(Qt::Key_Down);
        QTRY_COMPARE(focusedName(), u"video 1"_s);
        key(Qt::Key_Slash);
        QCOMPARE(focusedName(), u"Search files on this TV"_s);
        key(Qt::Key_Escape);
        QCOMPARE(m_presenter->library()->searchText(), QString());
        QTRY_COMPARE(focusedName(), u"video 0"_s);
        QTest::keyClick(window(), Qt::Key_Question, Qt::ControlModifier | Qt::ShiftModifier);
        QTRY_VERIFY(find(QAccessible::Dialog, "Keyboard shortcuts"));
        key(Qt::Key_Escape);
        QTRY_VERIFY(!find(QAccessible::Heading, "Keyboard shortcuts"));
        QCOMPARE(m_actions.calls.size(), 2);
    }

    void anotherTvClearsTheSearchField() {
        select(Bedroom);
        click(QAccessible::EditableText, "Search files on this TV");
        typeText(u"x"_s);
        select(Kitchen);
        QAccessibleInterface* field = find(QAccessible::EditableText, "Search files on this TV");
        QCOMPARE(field->text(QAccessible::Value), QString());
        typeText(u"y"_s); // still bound
        QCOMPARE(m_presenter->library()->searchText(), u"y"_s);
    }

    void hostileTextIsShownAsItIs() {
        const QString hostile = u"<b>x</b><img src='http://10.0.0.9/x.png'>"_s;
        const TVEndpoint tv = sampleTv(hostile, u"h"_s);
        m_state.discoveredDevices = {tv};
        m_state.content.groupedFiles = {sampleRow(hostile, hostile)};
        m_state.content.usbSetupHint = hostile;
        m_state.status = {hostile};
        select(tv);
        QTRY_COMPARE(accessibleNames(window(), QAccessible::StaticText).count(hostile), 4);
        QList<QQuickItem*> texts = window()->contentItem()->findChildren<QQuickItem*>();
        texts.removeIf([](QQuickItem* item) { return !item->inherits("QQuickText"); });
        QVERIFY(texts.size() > 5);
        for (const QQuickItem* text : texts)
            QCOMPARE(text->property("textFormat").toInt(), int(Qt::PlainText));
    }

    void theSheetTakesTheCode() {
        requirePairing();
        QTRY_VERIFY(find(QAccessible::EditableText, "3-digit code"));
        typeText(u"12"_s); // the field has the focus by itself
        press(QAccessible::Button, "Verify code");
        key(Qt::Key_Return);
        QVERIFY(m_actions.calls.isEmpty());
        typeText(u"34"_s);
        QVERIFY(press(QAccessible::Button, "Verify code"));
        m_state.pairing.refusal = u"Wrong code."_s;
        m_state.pairing.refusals = 1;
        tell();
        QVERIFY(find(QAccessible::AlertMessage, "Wrong code."));
        typeText(u"678"_s); // in place of the refused one
        key(Qt::Key_Return);
        QCOMPARE(m_actions.calls, (QStringList{u"verify 123"_s, u"verify 678"_s}));

        m_state.pairing = {};
        tell();
        QTRY_VERIFY(!find(QAccessible::Button, "Verify code"));
    }

    void escapePutsTheSheetAwayOnly() {
        requirePairing();
        QTRY_VERIFY(find(QAccessible::EditableText, "3-digit code"));
        key(Qt::Key_Escape);
        QVERIFY(!m_presenter->pairingSheet()->state().isShown);
        QTRY_VERIFY(!find(QAccessible::EditableText, "3-digit code"));
        QVERIFY(m_actions.calls.isEmpty());
        click(QAccessible::Button, "Enter pairing code");
        QTRY_VERIFY(find(QAccessible::EditableText, "3-digit code"));
    }

    void focusStaysInTheSheet() {
        requirePairing();
        QTRY_VERIFY(find(QAccessible::EditableText, "3-digit code"));
        m_presenter->pairingSheet()->type(u"123"_s);
        QStringList visited;
        for (int step = 0; step < 4; ++step) {
            auto* focus = QAccessible::queryAccessibleInterface(window()->activeFocusItem());
            QVERIFY(focus);
            visited.append(focus->text(QAccessible::Name));
            key(Qt::Key_Tab);
        }
        QCOMPARE(visited, QStringList({u"3-digit code"_s, u"Verify code"_s, u"Cancel pairing"_s,
                                       u"3-digit code"_s}));
    }

    void draggingTheKnobSeeksOnce() {
        select(Bedroom);
        read(playingVideo());
        QTRY_VERIFY(find(QAccessible::Slider, "Position"));
        QTRY_VERIFY(find(QAccessible::Slider, "Position")->rect().width() > 600); // laid out
        const QRect slider = find(QAccessible::Slider, "Position")->rect();
        const auto at = [&](double share) {
            const QPoint place(slider.left() + static_cast<int>(slider.width() * share),
                               slider.center().y());
            return window()->mapFromGlobal(place);
        };
        QTest::mousePress(window(), Qt::LeftButton, {}, at(0.1));
        for (const double share : {0.2, 0.3, 0.5})
            QTest::mouseMove(window(), at(share));
        read(playingVideo()); // a reading in between
        QTest::mouseRelease(window(), Qt::LeftButton, {}, at(0.5));
        QCOMPARE(m_actions.calls.size(), 1);
        const qint64 target = m_actions.calls.first().section(u' ', 1).toLongLong();
        QVERIFY2(std::abs(target - 3'600'000) < 30'000, qPrintable(m_actions.calls.first()));
        QVERIFY(std::abs(m_presenter->dock()->timeline().fraction - 0.5) < 0.01);
        key(Qt::Key_Tab); // the slider can have the keyboard, too
        QVERIFY(press(QAccessible::Button, "Forward 10 seconds"));
        QCOMPARE(m_actions.calls.last(), u"seek_by 10000"_s);
    }

    void menusTakeTheKeyboard() {
        select(Bedroom);
        PlaybackResponse playback = playingVideo();
        playback.subtitleTracks = QList<PlaybackTrack>(500, {u"7"_s, u"<img src=x>"_s, {}, false});
        read(playback);
        QTRY_VERIFY(find(QAccessible::Button, "Subtitle"));
        QVERIFY(press(QAccessible::Button, "Subtitle"));
        QTRY_VERIFY(find(QAccessible::MenuItem, "Off"));
        key(Qt::Key_Down);
        key(Qt::Key_Return);
        QTRY_VERIFY(!find(QAccessible::MenuItem, "Off"));
        QCOMPARE(m_actions.calls, QStringList(u"set_subtitle 7"_s));
        QCOMPARE(find(QAccessible::Button, "Subtitle")->text(QAccessible::Description),
                 u"Off"_s); // the TV has not said so
        QTRY_VERIFY(find(QAccessible::Button, "Subtitle"));
        QVERIFY(press(QAccessible::Button, "Subtitle"));
        QTRY_VERIFY(find(QAccessible::MenuItem, "Off"));
        key(Qt::Key_Escape);
        QTRY_VERIFY(!find(QAccessible::MenuItem, "Off"));
        QCOMPARE(m_actions.calls.size(), 1);
        QVERIFY(shows(u"n/a"_s));
    }

    void anOpenMenuStandsStillAndMakesWayForAnother() {
        select(Bedroom);
        PlaybackResponse playback = playingVideo();
        for (int number = 0; number < 60; ++number)
            playback.subtitleTracks.append(
                {QString::number(number), u"Track "_s + QString::number(number), {}, false});
        read(playback);
        QTRY_VERIFY(find(QAccessible::Button, "Subtitle"));
        click(QAccessible::Button, "Subtitle");
        QTRY_VERIFY(find(QAccessible::MenuItem, "Off"));
        for (int step = 0; step < 30; ++step)
            key(Qt::Key_Down);
        QTRY_VERIFY(find(QAccessible::MenuItem, "Track 29"));
        const auto highlighted = [this] {
            return find(QAccessible::PopupMenu, "Subtitle")->object()->property("currentIndex");
        };
        QCOMPARE(highlighted(), QVariant(30));
        const QRect before = find(QAccessible::MenuItem, "Track 29")->rect();
        playback.positionMs = 60'000;
        playback.subtitleTracks[2].selected = true;
        read(playback);
        QCOMPARE(highlighted(), QVariant(30));
        QCOMPARE(find(QAccessible::MenuItem, "Track 29")->rect(), before);

        QTest::mouseMove(window(), placeOf(find(QAccessible::Button, "Speed")));
        click(QAccessible::Button, "Speed");
        QTRY_VERIFY(find(QAccessible::MenuItem, "1.5x"));
        QTRY_VERIFY(!find(QAccessible::MenuItem, "Off"));
    }

    void aCutTextIsShownWholeUnderThePointer() {
        const QString title = u"Harbours "_s.repeated(60).trimmed();
        showRows({sampleRow(u"a.mkv"_s, title)});
        QTRY_COMPARE(accessibleNames(window(), QAccessible::StaticText).count(title), 1);
        QTest::mouseMove(window(),
                         placeOf(findAccessible(window(), QAccessible::StaticText, title)));
        QTRY_COMPARE(accessibleNames(window(), QAccessible::StaticText).count(title), 2);
    }

    void filesDroppedOnTheWindowAreUploaded() {
        select(Bedroom);
        QMimeData files;
        files.setUrls({QUrl(u"file:///v/a.mkv"_s), QUrl(u"file:///v/b.srt"_s)});
        const QPoint place(800, 400);
        QDragEnterEvent enter(place, Qt::CopyAction, &files, Qt::LeftButton, {});
        QCoreApplication::sendEvent(window(), &enter);
        QTRY_VERIFY(shows(u"Drop video files to upload"_s));
        QDropEvent drop(place, Qt::CopyAction, &files, Qt::LeftButton, {});
        QCoreApplication::sendEvent(window(), &drop);
        QVERIFY(drop.isAccepted());
        QCOMPARE(m_actions.calls, QStringList({u"upload a.mkv"_s, u"upload b.srt"_s}));
        QTRY_VERIFY(!shows(u"Drop video files to upload"_s));

        UploadListItem current = sampleUpload(u"1"_s, u"a.mkv"_s, *m_state.selectedDevice);
        current.state = UploadListItemState::Uploading;
        current.progress = 0.5;
        current.speedBytesPerSecond = 1'000'000;
        UploadListItem failed = sampleUpload(u"2"_s, u"b.srt"_s, *m_state.selectedDevice);
        failed.state = UploadListItemState::Failed;
        m_state.uploads = {current, failed};
        tell();
        QTRY_VERIFY(find(QAccessible::ListItem, "b.srt"));
        QVERIFY(shows(u"Uploading  50%  1 MB/s"_s));
        m_actions.calls.clear();
        QVERIFY(press(QAccessible::Button, "Try Again"));
        QVERIFY(press(QAccessible::Button, "Remove"));
        QVERIFY(press(QAccessible::Button, "Cancel"));
        QCOMPARE(m_actions.calls,
                 QStringList({u"retry upload 2"_s, u"cancel upload 2"_s, u"cancel upload 1"_s}));
    }

    void coloursFollowTheDesktop() {
        const auto corner = [this] {
            return window()->grabWindow().pixelColor(2, 2).lightness();
        };
        const QPalette before = QGuiApplication::palette();
        QGuiApplication::setPalette(QPalette(QColor(0x20, 0x20, 0x20)));
        QTRY_VERIFY(corner() < 60);
        QGuiApplication::setPalette(QPalette(QColor(0xf0, 0xf0, 0xf0)));
        QTRY_VERIFY(corner() > 200);
        DesktopLook stated;
        stated.scheme = DesktopLook::Scheme::Dark;
        m_ports.appearance.setLook(stated);
        QTRY_VERIFY(corner() < 60);
        stated.isHighContrast = true;
        m_ports.appearance.setLook(stated);
        QTRY_COMPARE(corner(), 0);
        QGuiApplication::setPalette(before);
    }

    void anEmulatedOpenGlIsNotUsed() {
        QVERIFY(isSoftwareRasteriser("llvmpipe (LLVM 15.0.6, 256 bits)"));
        QVERIFY(isSoftwareRasteriser("Software Rasterizer"));
        QVERIFY(!isSoftwareRasteriser("Mesa Intel(R) UHD Graphics 620 (KBL GT2)"));
    }

private:
    QStringList m_opened;
};

static const quiv::TestCase<WindowTest> registered;
#include "window_test.moc"
