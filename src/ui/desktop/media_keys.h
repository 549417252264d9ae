#pragma once

#include "platform/desktop/media_controls.h"
#include "playback/playback_timeline.h"
#include "ui/desktop/media_picture.h"
#include "ui/presenters/dock_presenter.h"
#include "ui/presenters/local_panel_presenter.h"

#include <QObject>

#include <functional>

namespace quiv {

class WindowActions;

// Lets the desktop's media keys control what plays: this computer's player while it is there, else
// the TV's.
class MediaKeys : public QObject, private MediaControls::Player {
    Q_OBJECT

public:
    // What it shows and uses; each outlives it.
    struct Parts {
        MediaControls& controls;
        WindowActions& actions;
        DockPresenter& dock;
        LocalPanelPresenter& panel;
        ThumbnailStore& thumbnails;
    };

    MediaKeys(const Parts& parts, std::function<void()> raiseWindow);
    ~MediaKeys() override;

    // After the presenters have shown it.
    void show(const WindowState& state);

private:
    void update();
    QUrl pictureAddress() const;
    void noticeJump(const std::optional<MediaSession>& before);
    bool isHere() const { return m_state.localPlayback.localPlaybackSession.has_value(); }

    std::int64_t positionMs() const override;
    void setPlaying(bool isPlaying) override;
    void stop() override;
    void seekBy(std::int64_t offsetMs) override;
    void seekTo(std::int64_t positionMs) override;
    void setSpeed(double speed) override;
    void raiseWindow() override { m_raiseWindow(); }

    const Parts m_parts;
    const std::function<void()> m_raiseWindow;
    MediaPicture m_picture;
    WindowState m_state;
    std::optional<MediaSession> m_session;
    PlaybackAnchor m_anchor; // from where the controls count on
};

} // namespace quiv
