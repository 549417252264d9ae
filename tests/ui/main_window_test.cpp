#include "accessible_tree.h"

#include "support/fake_appearance.h"
#include "support/fake_desktop.h"
#include "support/fake_file_manager.h"
#include "support/fake_picture_decoder.h"
#include "support/model_fixture.h"
#include "support/test_main.h"
#include "ui/window/main_window.h"

#include <QQuickWindow>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace quiv;
using namespace std::chrono_literals;

namespace {

const QByteArray OneVideo =
    R"({"files":[{"name":"a.mkv","kind":"VIDEO","sizeBytes":1}],"videos":[]})";

struct Desk : ModelFixture {
    FakePictureDecoder pictures;
    FakeFileManager fileManager;
    FakeAppearance appearance;
    FakeDesktop desktop;
    Desk()
        : window(
              model,
              {dialogs.preferred, http, pictures, fileManager, clock, appearance, dialogs.settings},
              desktop.ports) {
        window.show();
    }

    void announceTv() {
        browser.announce(serviceAt(u"tv"_s, {10, 0, 0, 2}, 8080));
        clock.advance(0ms);
        http.answer(InfoPath, R"({"name":"Bedroom"})");
        turn();
    }
    bool has(QAccessible::Role role, const char* name) const {
        return findAccessible(window.window(), role, QString::fromUtf8(name)) != nullptr;
    }
    bool press(const char* name) const {
        return pressAccessible(window.window(), QAccessible::Button, QString::fromUtf8(name));
    }

    MainWindow window;
};

} // namespace

// The window on the real model: what one says reaches the other.
class MainWindowTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QAccessible::setActive(true); }

    void theModelIsShownAndAsked() {
        Desk desk;
        QCOMPARE(desk.browser.searches.size(), 1);
        QVERIFY(desk.press("Refresh"));
        QCOMPARE(desk.browser.searches.size(), 2);

        desk.announceTv();
        QTRY_VERIFY(desk.has(QAccessible::Button, "Bedroom"));
        QTRY_VERIFY(desk.has(QAccessible::StaticText, "Loading library from Bedroom..."));
        QTRY_VERIFY(desk.http.waiting() > 0);
        QVERIFY(desk.http.answer(FilesPath, OneVideo));
        QTRY_VERIFY(desk.has(QAccessible::ListItem, "a.mkv"));
    }

    void theDesktopsKeysControlTheTv() {
        Desk desk;
        desk.announceTv();
        const QByteArray playing =
            R"({"currentVideoName":"a.mkv","isPlaying":true,"positionMs":0,"durationMs":9000})";
        QTRY_VERIFY(desk.http.waiting() > 0);
        QVERIFY(desk.http.answer(FilesPath, OneVideo));
        QTRY_VERIFY(!desk.http.latest(PlaybackPath).url.isEmpty());
        QVERIFY(desk.http.answer(PlaybackPath, playing));
        auto& keys = desk.desktop.mediaControls;
        QTRY_VERIFY(keys.session);
        QCOMPARE(keys.session->title, u"a.mkv"_s);
        QVERIFY(keys.session->isPlaying);
        keys.player->seekTo(20'000); // beyond the end
        QTRY_VERIFY(!desk.http.latest(StatusPath).url.isEmpty());
        QVERIFY(desk.http.answer(StatusPath, R"({"authorized":true,"expiresInSec":99})"));
        QTRY_VERIFY(desk.http.sent.back().url.contains("positionMs=9000"));
    }

    void filesFromOutsideWaitForATv() {
        Desk desk;
        const QUrl film = QUrl::fromLocalFile(u"/nowhere/Film.mkv"_s);
        desk.window.open({film});
        QCOMPARE(desk.status(), u"1 file waits to be uploaded: select a TV"_s);
        desk.announceTv();
        QTRY_COMPARE(desk.model.uploads()->uploadListItems().size(), 1);
        QVERIFY(!desk.window.window()->close()); // asks first
        QTRY_VERIFY(desk.has(QAccessible::Heading, "Quit while files are being transferred?"));
        QVERIFY(desk.press("Quit"));
        QTRY_VERIFY(!desk.window.window()->isVisible());
    }

    void aClosedWindowAsksNothingMore() {
        Desk desk;
        desk.announceTv();
        QTRY_VERIFY(desk.http.waiting() > 0);
        desk.window.window()->close();
        ModelFixture::turn();
        desk.http.takePaths();
        desk.clock.advance(1min);
        ModelFixture::turn();
        QCOMPARE(desk.http.waiting(), std::size_t(0));
        QCOMPARE(desk.http.paths, QStringList());
    }
};

static const quiv::TestCase<MainWindowTest> registered;
#include "main_window_test.moc"
