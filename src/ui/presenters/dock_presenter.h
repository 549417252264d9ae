#pragma once

#include "model/window_state.h"
#include "playback/playback_timeline.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

namespace quiv {

class WindowActions;

// The offered speeds.
const QList<double>& playbackSpeedOptions();

// What the dock shows of the player, but for the time.
struct DockState {
    Q_GADGET
    QML_VALUE_TYPE(dockState)
    Q_PROPERTY(bool isShown MEMBER isShown)
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(QString stateText MEMBER stateText)
    Q_PROPERTY(QString playSymbol MEMBER playSymbol)
    Q_PROPERTY(QStringList subtitles MEMBER subtitles)
    Q_PROPERTY(int subtitleIndex MEMBER subtitleIndex)
    Q_PROPERTY(QStringList audioTracks MEMBER audioTracks)
    Q_PROPERTY(int audioIndex MEMBER audioIndex)
    Q_PROPERTY(QStringList speeds MEMBER speeds)
    Q_PROPERTY(int speedIndex MEMBER speedIndex)

public:
    bool isShown = false;
    QString title;
    QString stateText;
    QString playSymbol;    // what pressing play/pause would do
    QStringList subtitles; // "Off" first
    int subtitleIndex = 0;
    QStringList audioTracks;
    int audioIndex = 0;
    QStringList speeds;
    int speedIndex = 0;

    bool operator==(const DockState&) const = default;
};

// The dock's timeline at an instant.
struct DockTimeline {
    Q_GADGET
    QML_VALUE_TYPE(dockTimeline)
    Q_PROPERTY(double fraction MEMBER fraction)
    Q_PROPERTY(double bufferedFraction MEMBER bufferedFraction)
    Q_PROPERTY(QString positionText MEMBER positionText)
    Q_PROPERTY(QString durationText MEMBER durationText)
    Q_PROPERTY(bool canSeek MEMBER canSeek)
    Q_PROPERTY(int glideMs MEMBER glideMs)
    Q_PROPERTY(double glideShare MEMBER glideShare)

public:
    double fraction = 0;
    double bufferedFraction = 0; // what has arrived of a video that plays here
    QString positionText;
    QString durationText;
    bool canSeek = false;
    int glideMs = 0;       // over which time the knob moves here; 0: it jumps
    double glideShare = 0; // of the whole timeline, that it moves in that time

    bool operator==(const DockTimeline&) const = default;
};

// Which controls of the dock the TV has not answered to.
struct DockWaiting {
    Q_GADGET
    QML_VALUE_TYPE(dockWaiting)
    Q_PROPERTY(bool play MEMBER play)
    Q_PROPERTY(bool stop MEMBER stop)
    Q_PROPERTY(bool back MEMBER back)
    Q_PROPERTY(bool forward MEMBER forward)
    Q_PROPERTY(bool position MEMBER position)
    Q_PROPERTY(bool subtitle MEMBER subtitle)
    Q_PROPERTY(bool audio MEMBER audio)
    Q_PROPERTY(bool speed MEMBER speed)

public:
    bool play = false;
    bool stop = false;
    bool back = false;
    bool forward = false;
    bool position = false; // a place of the timeline
    bool subtitle = false;
    bool audio = false;
    bool speed = false;

    bool operator==(const DockWaiting&) const = default;
};

DockWaiting dockWaiting(const QList<PlaybackCommand>& pending);

// What the TV plays, and what the user can do about it. Shows what the TV reported, never what was
// clicked.
class DockPresenter : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to the window's presenter")
    Q_PROPERTY(quiv::DockState state READ state NOTIFY stateChanged)
    Q_PROPERTY(quiv::DockTimeline timeline READ timeline NOTIFY timelineChanged)
    Q_PROPERTY(quiv::DockWaiting waiting READ waiting NOTIFY waitingChanged)
    Q_PROPERTY(bool isReachable READ isReachable NOTIFY isReachableChanged)

public:
    explicit DockPresenter(WindowActions& actions, QObject* parent = nullptr);

    const DockState& state() const { return m_state; }
    const DockTimeline& timeline() const { return m_shownTimeline; }
    const DockWaiting& waiting() const { return m_waiting; }
    bool isReachable() const { return m_isReachable; } // the TV answers
    std::int64_t positionMs() const;                   // as shown now

    void show(const WindowState& state);

    Q_INVOKABLE void playOrPause();
    Q_INVOKABLE void stop();
    // Goes on with the video on this computer.
    Q_INVOKABLE void playHere();
    Q_INVOKABLE void seekBack();
    Q_INVOKABLE void seekForward();
    // The knob is held at a place of the timeline, moved, let go. A drag that is cancelled, also by
    // what the TV reports meanwhile, seeks nowhere.
    Q_INVOKABLE void beginDrag(double fraction);
    Q_INVOKABLE void drag(double fraction);
    Q_INVOKABLE void drop();
    Q_INVOKABLE void cancelDrag();
    // The time at a place of the timeline.
    Q_INVOKABLE QString timeAt(double fraction) const;
    // `index` is the place in the menu's list of the state.
    Q_INVOKABLE void chooseSubtitle(int index);
    Q_INVOKABLE void chooseAudio(int index);
    Q_INVOKABLE void chooseSpeed(int index);

Q_SIGNALS:
    void stateChanged();
    void timelineChanged();
    void waitingChanged();
    void isReachableChanged();

private:
    enum class Motion { Jump, Glide };

    const PlaybackResponse* playback() const;
    void takeReading(const PlaybackResponse* read, bool isSameVideo);
    void showTimeline(Motion motion);

    WindowActions& m_actions;
    WindowState m_shown;
    DockState m_state;
    PlaybackTimeline m_timeline;
    DockTimeline m_shownTimeline;
    DockWaiting m_waiting;
    bool m_isReachable = true;
    QTimer m_tick;
};

// What the TV plays; nullptr while it has no video open.
const PlaybackResponse* openPlayback(const WindowState& state);

// The title of the library's group with this video, else the name without its extension.
QString nowPlayingTitle(const QList<LibraryRow>& groups, const QString& videoName);

DockState dockState(const PlaybackResponse& playback, const QString& title);

} // namespace quiv
