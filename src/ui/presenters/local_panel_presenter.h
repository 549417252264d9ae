#pragma once

#include "model/window_state.h"
#include "ui/presenters/dock_presenter.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

#include <memory>
#include <optional>

namespace quiv {

class WindowActions;

// What the panel says of the video that plays here.
struct LocalPanelState {
    Q_GADGET
    QML_VALUE_TYPE(localPanelState)
    Q_PROPERTY(bool isShown MEMBER isShown)
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(QString errorText MEMBER errorText)
    Q_PROPERTY(bool canOpenInVlc MEMBER canOpenInVlc)
    Q_PROPERTY(bool lacksVlc MEMBER lacksVlc)
    Q_PROPERTY(QStringList subtitles MEMBER subtitles)
    Q_PROPERTY(int subtitleIndex MEMBER subtitleIndex)
    Q_PROPERTY(QStringList audioTracks MEMBER audioTracks)
    Q_PROPERTY(int audioIndex MEMBER audioIndex)

public:
    bool isShown = false;
    QString title;
    QString errorText; // over the picture; empty if all is well
    bool canOpenInVlc = false;
    bool lacksVlc = false; // could open it if it were installed
    QStringList subtitles;
    int subtitleIndex = 0;
    QStringList audioTracks;
    int audioIndex = 0;

    bool operator==(const LocalPanelState&) const = default;
};

// What the controls over the picture show, but for the time.
struct LocalControls {
    Q_GADGET
    QML_VALUE_TYPE(localControls)
    Q_PROPERTY(bool isPlaying MEMBER isPlaying)
    Q_PROPERTY(bool isBuffering MEMBER isBuffering)
    Q_PROPERTY(QString playSymbol MEMBER playSymbol)
    Q_PROPERTY(QString volumeSymbol MEMBER volumeSymbol)
    Q_PROPERTY(double volume MEMBER volume)

public:
    bool isPlaying = false;
    bool isBuffering = false;
    QString playSymbol; // what pressing it would do
    QString volumeSymbol;
    double volume = 0; // 0 to 1; 0 while muted

    bool operator==(const LocalControls&) const = default;
};

// The player that a view shows. Does not keep it alive: the engine may keep values for a while.
struct LocalPlayerHandle {
    Q_GADGET
    QML_VALUE_TYPE(localPlayerHandle)

public:
    std::weak_ptr<PlayerScreen> screen;

    bool operator==(const LocalPlayerHandle& other) const {
        return !screen.owner_before(other.screen) && !other.screen.owner_before(screen);
    }
};

// What plays on this computer, and the controls over it. The volume outlives the sessions.
class LocalPanelPresenter : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to the window's presenter")
    Q_PROPERTY(quiv::LocalPanelState state READ state NOTIFY stateChanged)
    Q_PROPERTY(quiv::LocalControls controls READ controls NOTIFY controlsChanged)
    Q_PROPERTY(quiv::DockTimeline timeline READ timeline NOTIFY timelineChanged)
    Q_PROPERTY(quiv::LocalPlayerHandle player READ player NOTIFY playerChanged)
    Q_PROPERTY(bool isFullScreen READ isFullScreen NOTIFY isFullScreenChanged)

public:
    explicit LocalPanelPresenter(WindowActions& actions, QObject* parent = nullptr);
    ~LocalPanelPresenter() override;

    const LocalPanelState& state() const { return m_state; }
    const LocalControls& controls() const { return m_controls; }
    const DockTimeline& timeline() const { return m_timeline; }
    LocalPlayerHandle player() const { return m_player; }
    bool isFullScreen() const { return m_isFullScreen; }

    void show(const WindowState& state);

    Q_INVOKABLE void playOrPause();
    Q_INVOKABLE void seekBack();
    Q_INVOKABLE void seekForward();
    // As in the dock: the knob is held, moved, let go.
    Q_INVOKABLE void beginDrag(double fraction);
    Q_INVOKABLE void drag(double fraction);
    Q_INVOKABLE void drop();
    Q_INVOKABLE void cancelDrag();
    // The time at a place of the timeline.
    Q_INVOKABLE QString timeAt(double fraction) const;
    Q_INVOKABLE void setVolume(double volume);
    Q_INVOKABLE void changeVolume(double by);
    Q_INVOKABLE void toggleMuted();
    Q_INVOKABLE void toggleFullScreen();
    Q_INVOKABLE void leaveFullScreen();
    // `index` is the place in the menu's list of the state.
    Q_INVOKABLE void chooseSubtitle(int index);
    Q_INVOKABLE void chooseAudio(int index);
    Q_INVOKABLE void openInVlc();
    Q_INVOKABLE void playOnTV();
    Q_INVOKABLE void close();

Q_SIGNALS:
    void stateChanged();
    void controlsChanged();
    void timelineChanged();
    void playerChanged();
    void isFullScreenChanged();

private:
    void takePlayer(const std::shared_ptr<PlayerScreen>& screen);
    void showPlayer();
    void seekBy(double seconds);

    WindowActions& m_actions;
    LocalPlaybackState m_shown;
    LocalPanelState m_state;
    LocalControls m_controls;
    DockTimeline m_timeline;
    LocalPlayerHandle m_player;
    std::unique_ptr<Observation> m_observation;
    std::optional<double> m_dragFraction; // while the knob is held
    double m_volume = 1;
    bool m_isMuted = false;
    bool m_isFullScreen = false;
};

LocalPanelState localPanelState(const LocalPlaybackState& playback);
LocalControls localControls(const ScreenState& screen);
// `dragFraction` is where the user holds the knob.
DockTimeline localTimeline(const ScreenState& screen, std::optional<double> dragFraction);

} // namespace quiv
