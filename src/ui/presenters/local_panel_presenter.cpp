#include "ui/presenters/local_panel_presenter.h"

#include "platform/publish.h"
#include "ui/display_format.h"
#include "ui/presenters/window_actions.h"

#include <algorithm>
#include <cmath>

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

constexpr double SeekStep = SeekStepMs / 1000.0;
constexpr double QuietBelow = 0.5;

QStringList labelsOf(const QList<LocalMediaOption>& options) {
    QStringList labels;
    for (const LocalMediaOption& option : options)
        labels.append(displayText(option.label));
    return labels;
}

int indexOf(const QList<LocalMediaOption>& options, const QString& id) {
    const auto found = std::ranges::find(options, id, &LocalMediaOption::id);
    return found == options.end() ? -1 : static_cast<int>(found - options.begin());
}

std::int64_t milliseconds(double seconds) {
    return std::llround(seconds * 1000);
}

} // namespace

LocalPanelState localPanelState(const LocalPlaybackState& playback) {
    LocalPanelState state;
    if (!playback.localPlaybackSession)
        return state;
    const QString error = displayText(playback.localPlaybackErrorMessage.value_or(QString()));
    const auto& prompt = playback.externalPlayerPrompt;
    state.isShown = true;
    state.title = displayText(playback.localPlaybackSession->displayTitle);
    state.errorText = error.isEmpty() && prompt
                          ? u"This format is not supported by the built-in macOS player."_s
                          : error;
    state.canOpenInVlc = prompt && prompt->vlcAvailable;
    state.lacksVlc = prompt && !prompt->vlcAvailable;
    state.subtitles = labelsOf(playback.localSubtitleOptions);
    state.subtitleIndex = indexOf(playback.localSubtitleOptions, playback.selectedLocalSubtitleID);
    state.audioTracks = labelsOf(playback.localAudioOptions);
    state.audioIndex = indexOf(playback.localAudioOptions, playback.selectedLocalAudioID);
    return state;
}

LocalControls localControls(const ScreenState& screen) {
    LocalControls controls;
    controls.isPlaying = screen.isPlaying;
    controls.isBuffering = screen.isBuffering;
    controls.playSymbol = screen.isPlaying ? u"pause.fill"_s : u"play.fill"_s;
    controls.volume = screen.isMuted ? 0 : screen.volume;
    controls.volumeSymbol = controls.volume == 0           ? u"speaker.slash.fill"_s
                            : controls.volume < QuietBelow ? u"speaker.wave.1.fill"_s
                                                           : u"speaker.wave.2.fill"_s;
    return controls;
}

DockTimeline localTimeline(const ScreenState& screen, std::optional<double> dragFraction) {
    DockTimeline timeline;
    timeline.canSeek = screen.duration > 0;
    const double length = timeline.canSeek ? screen.duration : 1;
    const double reached = std::clamp(screen.position / length, 0.0, 1.0);
    timeline.fraction = timeline.canSeek ? dragFraction.value_or(reached) : 0;
    timeline.bufferedFraction =
        timeline.canSeek ? std::clamp(screen.bufferedUntil / length, 0.0, 1.0) : 0;
    timeline.positionText = formatPlaybackTime(
        milliseconds(dragFraction ? *dragFraction * screen.duration : screen.position));
    timeline.durationText = formatPlaybackTime(milliseconds(screen.duration));
    const bool isMoving = screen.isPlaying && !screen.isBuffering && !dragFraction;
    if (timeline.canSeek && isMoving) {
        timeline.glideMs = static_cast<int>(TimelineRefreshPeriod.count());
        timeline.glideShare = timeline.glideMs / (1000 * screen.duration);
    }
    return timeline;
}

LocalPanelPresenter::LocalPanelPresenter(WindowActions& actions, QObject* parent)
    : QObject(parent), m_actions(actions) {}

LocalPanelPresenter::~LocalPanelPresenter() = default;

void LocalPanelPresenter::show(const WindowState& state) {
    m_shown = state.localPlayback;
    takePlayer(m_shown.localPlayer);
    if (!m_shown.localPlaybackSession)
        leaveFullScreen();
    publish(this, m_state, localPanelState(m_shown), &LocalPanelPresenter::stateChanged);
}

void LocalPanelPresenter::takePlayer(const std::shared_ptr<PlayerScreen>& screen) {
    if (m_player.screen.lock() == screen)
        return;
    m_observation.reset();
    m_dragFraction.reset();
    if (screen) {
        screen->setVolume(m_volume);
        screen->setMuted(m_isMuted);
        m_observation = screen->observeState([this] { showPlayer(); });
    }
    m_player = {screen};
    Q_EMIT playerChanged();
    showPlayer();
}

void LocalPanelPresenter::showPlayer() {
    const auto& screen = m_shown.localPlayer;
    const ScreenState state = screen ? screen->state() : ScreenState();
    publish(this, m_controls, localControls(state), &LocalPanelPresenter::controlsChanged);
    publish(this, m_timeline, localTimeline(state, m_dragFraction),
            &LocalPanelPresenter::timelineChanged);
}

void LocalPanelPresenter::playOrPause() {
    if (const auto& screen = m_shown.localPlayer)
        screen->setPlaying(!screen->state().isPlaying);
}

void LocalPanelPresenter::seekBack() {
    seekBy(-SeekStep);
}

void LocalPanelPresenter::seekForward() {
    seekBy(SeekStep);
}

void LocalPanelPresenter::seekBy(double seconds) {
    if (const auto& screen = m_shown.localPlayer; screen && m_timeline.canSeek)
        screen->seek(std::clamp(screen->state().position + seconds, 0.0, screen->state().duration));
}

void LocalPanelPresenter::beginDrag(double fraction) {
    if (!m_timeline.canSeek)
        return;
    m_dragFraction = std::clamp(fraction, 0.0, 1.0);
    showPlayer();
}

void LocalPanelPresenter::drag(double fraction) {
    if (m_dragFraction)
        beginDrag(fraction);
}

void LocalPanelPresenter::drop() {
    const auto& screen = m_shown.localPlayer;
    if (!m_dragFraction || !screen)
        return;
    const double target = *m_dragFraction * screen->state().duration;
    m_dragFraction.reset();
    screen->seek(target);
    showPlayer();
}

void LocalPanelPresenter::cancelDrag() {
    m_dragFraction.reset();
    showPlayer();
}

QString LocalPanelPresenter::timeAt(double fraction) const {
    const auto& screen = m_shown.localPlayer;
    return screen ? formatPlaybackTime(std::llround(fraction * screen->state().duration * 1000))
                  : QString();
}

void LocalPanelPresenter::setVolume(double volume) {
    m_volume = std::clamp(volume, 0.0, 1.0);
    m_isMuted = false;
    if (const auto& screen = m_shown.localPlayer) {
        screen->setVolume(m_volume);
        screen->setMuted(false);
    }
}

void LocalPanelPresenter::changeVolume(double by) {
    setVolume(m_controls.volume + by);
}

void LocalPanelPresenter::toggleMuted() {
    m_isMuted = !m_isMuted;
    if (const auto& screen = m_shown.localPlayer)
        screen->setMuted(m_isMuted);
}

void LocalPanelPresenter::toggleFullScreen() {
    const bool isFullScreen = !m_isFullScreen && m_shown.localPlaybackSession;
    publish(this, m_isFullScreen, isFullScreen, &LocalPanelPresenter::isFullScreenChanged);
}

void LocalPanelPresenter::leaveFullScreen() {
    publish(this, m_isFullScreen, false, &LocalPanelPresenter::isFullScreenChanged);
}

void LocalPanelPresenter::chooseSubtitle(int index) {
    if (index >= 0 && index < m_shown.localSubtitleOptions.size())
        m_actions.selectLocalSubtitle(m_shown.localSubtitleOptions.at(index).id);
}

void LocalPanelPresenter::chooseAudio(int index) {
    if (index >= 0 && index < m_shown.localAudioOptions.size())
        m_actions.selectLocalAudio(m_shown.localAudioOptions.at(index).id);
}

void LocalPanelPresenter::openInVlc() {
    m_actions.openStreamInVLC();
}

void LocalPanelPresenter::playOnTV() {
    m_actions.playLocalSessionOnTV();
}

void LocalPanelPresenter::close() {
    m_actions.closeLocalPlayback();
}

} // namespace quiv
