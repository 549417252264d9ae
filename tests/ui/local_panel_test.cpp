#include "recording_actions.h"
#include "sample_state.h"
#include "support/fake_player.h"
#include "support/test_main.h"
#include "ui/presenters/local_panel_presenter.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace quiv;

// The panel of what plays on this computer, without a view.
class LocalPanelTest : public QObject {
    Q_OBJECT

private:
    RecordingActions m_actions;
    WindowState m_state;
    LocalPanelPresenter m_panel{m_actions};

private Q_SLOTS:
    void itSaysWhatPlaysHere() {
        const auto player = std::make_shared<FakePlayer>();
        m_state = {};
        LocalPlaybackState& local = m_state.localPlayback;
        local.localPlaybackSession = LocalPlaybackSession{u"1"_s, u"a.mkv"_s, u"A\nfilm"_s, {}};
        local.localPlayer = player;
        local.localSubtitleOptions = {{u"off"_s, u"Off"_s},
                                      {u"subtitle-0-English"_s, u"English"_s}};
        local.selectedLocalSubtitleID = u"subtitle-0-English"_s;
        m_panel.show(m_state);
        QCOMPARE(m_panel.state().title, u"A film"_s);
        QCOMPARE(m_panel.state().subtitleIndex, 1);
        QCOMPARE(m_panel.state().errorText, QString());
        m_panel.chooseSubtitle(0);
        m_panel.chooseSubtitle(2);
        m_panel.chooseAudio(0);
        QCOMPARE(m_actions.calls, QStringList(u"subtitle off"_s));

        local.externalPlayerPrompt = ExternalPlayerPrompt{{}, {}, {}, true};
        m_panel.show(m_state);
        QCOMPARE(m_panel.state().errorText,
                 u"This format is not supported by the built-in macOS player."_s);
        QVERIFY(m_panel.state().canOpenInVlc && !m_panel.state().lacksVlc);
        local.localPlaybackErrorMessage = u"Broken."_s;
        local.externalPlayerPrompt->vlcAvailable = false;
        m_panel.show(m_state);
        QCOMPARE(m_panel.state().errorText, u"Broken."_s);
        QVERIFY(!m_panel.state().canOpenInVlc && m_panel.state().lacksVlc);
        m_panel.toggleFullScreen();
        QVERIFY(m_panel.isFullScreen());
        local = {};
        m_panel.show(m_state);
        QVERIFY(!m_panel.isFullScreen() && !m_panel.state().isShown);
    }

    void itsControlsReachThePlayer() {
        auto player = std::make_shared<FakePlayer>();
        m_state = {};
        LocalPlaybackState& local = m_state.localPlayback;
        local.localPlaybackSession = LocalPlaybackSession{u"1"_s, u"a.mkv"_s, u"A"_s, {}};
        local.localPlayer = player;
        m_panel.show(m_state);
        m_panel.beginDrag(0.5); // the duration is not known yet
        m_panel.drop();
        player->calls.clear();
        player->screen.duration = 100;
        player->screen.position = 95;
        player->screen.bufferedUntil = 120;
        player->tellState();
        QCOMPARE(m_panel.timeline().fraction, 0.95);
        QCOMPARE(m_panel.timeline().bufferedFraction, 1.0);
        m_panel.seekForward();
        m_panel.seekBack();
        m_panel.beginDrag(0.25);
        QCOMPARE(m_panel.timeline().positionText, u"00:25"_s);
        m_panel.drag(0.5);
        QCOMPARE(m_panel.timeline().fraction, 0.5);
        m_panel.drop();
        m_panel.beginDrag(0.75);
        m_panel.cancelDrag();
        m_panel.drop();
        m_panel.playOrPause();
        QCOMPARE(m_panel.controls().playSymbol, u"pause.fill"_s);
        m_panel.toggleMuted();
        QCOMPARE(m_panel.controls().volumeSymbol, u"speaker.slash.fill"_s);
        m_panel.changeVolume(0.3); // from silence
        QCOMPARE(player->calls, QStringList({u"seek 100.000"_s, u"seek 85.000"_s, u"seek 50.000"_s,
                                             u"play"_s, u"mute"_s, u"volume 0.3"_s, u"unmute"_s}));
        const auto next = std::make_shared<FakePlayer>();
        local.localPlayer = next;
        m_panel.show(m_state);
        QCOMPARE(next->calls, QStringList({u"volume 0.3"_s, u"unmute"_s}));
        const std::weak_ptr<FakePlayer> before = std::exchange(player, nullptr);
        QVERIFY(before.expired());
    }
};

static const quiv::TestCase<LocalPanelTest> registered;
#include "local_panel_test.moc"
