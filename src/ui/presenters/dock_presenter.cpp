#include "ui/presenters/dock_presenter.h"

#include "platform/publish.h"
#include "ui/display_format.h"
#include "ui/presenters/window_actions.h"

#include <algorithm>

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

using Clock = std::chrono::steady_clock;

// What stands for "no subtitles" among the ids of subtitle tracks.
const auto OffTag = u"off"_s;

// -1: none is.
int selectedIndex(const QList<PlaybackTrack>& tracks) {
    const auto found = std::ranges::find(tracks, true, &PlaybackTrack::selected);
    return found == tracks.end() ? -1 : static_cast<int>(found - tracks.begin());
}

QString trackLabel(const PlaybackTrack& track, qsizetype number) {
    for (const QString& text : {displayText(track.label), displayText(track.id)}) {
        if (!text.trimmed().isEmpty())
            return text;
    }
    return u"Track %1"_s.arg(number);
}

QStringList trackLabels(const QList<PlaybackTrack>& tracks) {
    QStringList labels;
    for (const PlaybackTrack& track : tracks)
        labels.append(trackLabel(track, labels.size() + 1));
    return labels;
}

// In the menu, whose first entry is "Off".
int subtitleIndex(const QList<PlaybackTrack>& tracks) {
    const int index = selectedIndex(tracks);
    return index >= 0 && tracks.at(index).id != OffTag ? index + 1 : 0;
}

QStringList speedLabels() {
    QStringList labels;
    for (const double speed : playbackSpeedOptions())
        labels.append(formatPlaybackSpeed(speed));
    return labels;
}

bool isVideoOpen(const std::optional<PlaybackResponse>& playback) {
    return playback && playback->currentVideoName &&
           !playback->currentVideoName->trimmed().isEmpty();
}

} // namespace

const QList<double>& playbackSpeedOptions() {
    static const QList<double> options{0.5, 0.75, 1.0, 1.25, 1.5, 1.75, 2.0};
    return options;
}

QString nowPlayingTitle(const QList<LibraryRow>& groups, const QString& videoName) {
    const auto found = std::ranges::find_if(groups, [&](const LibraryRow& row) {
        return row.group.video && row.group.video->name == videoName;
    });
    if (found != groups.end())
        return displayText(found->group.title);
    const qsizetype dot = videoName.lastIndexOf(u'.');
    const QString stem = (dot < 0 ? videoName : videoName.first(dot)).trimmed();
    return displayText(stem.isEmpty() ? videoName : stem);
}

DockState dockState(const PlaybackResponse& playback, const QString& title) {
    DockState state;
    state.isShown = true;
    state.title = title;
    state.stateText = playback.isPlaying ? u"Playing on TV"_s : u"Paused on TV"_s;
    state.playSymbol = playback.isPlaying ? u"pause.fill"_s : u"play.fill"_s;
    state.subtitles = QStringList(u"Off"_s) + trackLabels(playback.subtitleTracks);
    state.subtitleIndex = subtitleIndex(playback.subtitleTracks);
    state.audioTracks = trackLabels(playback.audioTracks);
    state.audioIndex = std::max(0, selectedIndex(playback.audioTracks));
    state.speeds = speedLabels();
    const double speed = nearestSpeedOption(playbackSpeedOptions(), playback.playbackSpeed);
    state.speedIndex = static_cast<int>(playbackSpeedOptions().indexOf(speed));
    return state;
}

DockPresenter::DockPresenter(WindowActions& actions, QObject* parent)
    : QObject(parent), m_actions(actions) {
    m_tick.setInterval(TimelineRefreshPeriod);
    m_tick.callOnTimeout(this, [this] { showTimeline(Motion::Glide); });
}

void DockPresenter::setPlayback(const std::optional<PlaybackResponse>& playback) {
    const auto read = isVideoOpen(playback) ? playback : std::nullopt;
    const bool isSameVideo =
        read && m_playback && read->currentVideoName == m_playback->currentVideoName;
    m_playback = read;
    if (!isSameVideo || read->durationMs < 1)
        m_timeline = timelineDragCancelled(m_timeline, Clock::now());
    if (read) {
        const ReportedPosition reported{read->positionMs, read->durationMs, read->isPlaying};
        m_timeline = timelineReported(m_timeline, reported, Clock::now());
    }
    if (!isSameVideo)
        updateTitle();
    updateState();
    showTimeline(Motion::Jump);
}

void DockPresenter::setContent(const LibraryContent& content) {
    m_groups = content.groupedFiles;
    updateTitle();
    updateState();
}

void DockPresenter::updateTitle() {
    m_title = m_playback ? nowPlayingTitle(m_groups, *m_playback->currentVideoName) : QString();
}

void DockPresenter::updateState() {
    publish(this, m_state, m_playback ? dockState(*m_playback, m_title) : DockState(),
            &DockPresenter::stateChanged);
}

void DockPresenter::showTimeline(Motion motion) {
    const auto now = Clock::now();
    const double fraction = displayedFraction(m_timeline, now);
    const bool isMoving = m_playback && m_playback->isPlaying && m_playback->durationMs >= 1 &&
                          !m_timeline.isSeeking && fraction < 1;
    if (isMoving != m_tick.isActive())
        isMoving ? m_tick.start() : m_tick.stop();
    DockTimeline shown;
    shown.fraction = fraction;
    shown.positionText = formatPlaybackTime(displayedPositionMs(m_timeline, now));
    shown.durationText = formatPlaybackTime(m_timeline.reported.durationMs);
    shown.canSeek = m_playback && m_playback->durationMs >= 1;
    if (isMoving && motion == Motion::Glide) {
        shown.glideMs = static_cast<int>(TimelineRefreshPeriod.count());
        shown.glideShare = shown.glideMs / static_cast<double>(m_playback->durationMs);
    }
    publish(this, m_shownTimeline, shown, &DockPresenter::timelineChanged);
}

void DockPresenter::playOrPause() {
    if (m_playback)
        m_actions.togglePlayback(*m_playback->currentVideoName);
}

void DockPresenter::stop() {
    m_actions.sendPlayback(PlaybackCommand::stop());
}

void DockPresenter::seekBack() {
    m_actions.sendPlayback(PlaybackCommand::seekBy(-SeekStepMs));
}

void DockPresenter::seekForward() {
    m_actions.sendPlayback(PlaybackCommand::seekBy(SeekStepMs));
}

void DockPresenter::beginDrag(double fraction) {
    if (!m_shownTimeline.canSeek)
        return;
    m_timeline = timelineDragged(m_timeline, fraction);
    showTimeline(Motion::Jump);
}

void DockPresenter::drag(double fraction) {
    if (m_timeline.isSeeking)
        beginDrag(fraction);
}

void DockPresenter::drop() {
    if (!m_timeline.isSeeking)
        return;
    const std::int64_t target = dragTargetMs(m_timeline);
    m_timeline = timelineDropped(m_timeline, Clock::now());
    showTimeline(Motion::Jump);
    m_actions.sendPlayback(PlaybackCommand::seekTo(target));
}

void DockPresenter::cancelDrag() {
    m_timeline = timelineDragCancelled(m_timeline, Clock::now());
    showTimeline(Motion::Jump);
}

void DockPresenter::chooseSubtitle(int index) {
    if (!m_playback || index < 0 || index > m_playback->subtitleTracks.size())
        return;
    const QString tag = index == 0 ? OffTag : m_playback->subtitleTracks.at(index - 1).id;
    m_actions.sendPlayback(
        PlaybackCommand::setSubtitle(tag == OffTag ? std::nullopt : std::optional(tag)));
}

void DockPresenter::chooseAudio(int index) {
    if (m_playback && index >= 0 && index < m_playback->audioTracks.size())
        m_actions.sendPlayback(PlaybackCommand::setAudio(m_playback->audioTracks.at(index).id));
}

void DockPresenter::chooseSpeed(int index) {
    if (index >= 0 && index < playbackSpeedOptions().size())
        m_actions.sendPlayback(PlaybackCommand::setSpeed(playbackSpeedOptions().at(index)));
}

} // namespace quiv
