#pragma once

#include "platform/player/observers.h"
#include "platform/player/player_screen.h"
#include "player/mpv_core.h"
#include "player/mpv_tracks.h"

#include <QObject>

#include <atomic>
#include <cmath>
#include <memory>
#include <optional>

namespace quiv {

// A player of libmpv's. Opens the stream once there is something to draw on, and begins to play
// once whoever waits for ReadyToPlay has said from where.
//
// Main thread only, and never waits for libmpv: what is asked of it is queued, what it says is read
// when it has something to say.
class MpvPlayer final : public QObject, public MediaPlayer, public PlayerScreen {
public:
    MpvPlayer(const StreamAddress& address, Drawing drawing);
    ~MpvPlayer() override;

    std::unique_ptr<Observation>
    observeStatus(std::function<void(const ItemReport&)> observer) override;
    void play() override { setPlaying(true); }
    void pause() override { setPlaying(false); }
    double currentTime() const override { return m_target.value_or(m_time); }
    void seek(double seconds) override;
    std::optional<MediaGroup> group(MediaKind kind) const override;
    void select(MediaKind kind, std::optional<std::int64_t> option) override;

    const ScreenState& state() const override { return m_screen; }
    std::unique_ptr<Observation> observeState(std::function<void()> observer) override;
    void setPlaying(bool isPlaying) override;
    void setVolume(double volume) override;
    void setMuted(bool isMuted) override;
    QQuickItem* makeVideo() override;

private:
    enum Property { Time, Duration, Cached, Tracks, AtEnd, Stalled, Seeking, Width };

    static void wake(void* player);
    void readEvents();
    void take(const mpv_event& event);
    void takeProperty(Property property, const mpv_event_property& value);
    void takeTracks(const mpv_event_property& value);
    void open(bool canBeDrawn);
    void becomeReady();
    void restarted();
    void reachedEnd();
    void ended(const mpv_event_end_file& end);
    void fail(const QString& error);
    void sendSeek();
    void tellState();

    const Drawing m_drawing;
    const std::shared_ptr<MpvCore> m_core;
    std::atomic<bool> m_isWoken = false;
    Observers<ItemReport> m_statusObservers;
    Observers<> m_stateObservers;
    ItemReport m_status;
    ScreenState m_screen;
    ScreenState m_told;
    QList<Track> m_tracks;
    double m_time = NAN;
    std::optional<double> m_target; // of the seek under way
    bool m_isSeekSent = false;      // and not answered
    bool m_isSeekNewer = false;     // than the one sent
    bool m_hasStarted = false;      // has had something to show or to be heard
    bool m_isStalled = false;
    bool m_isSeeking = false;
    bool m_isAtEnd = false;
};

} // namespace quiv
