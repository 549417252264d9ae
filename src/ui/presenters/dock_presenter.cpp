#include "ui/presenters/dock_presenter.h"

#include "platform/publish.h"
#include "ui/display_format.h"
#include "ui/presenters/window_actions.h"

#include <algorithm>
#include <utility>

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

using SteadyClock = std::chrono::steady_clock;

// What stands for "no subtitles" among the ids of subtitle tracks.
const auto OffTag = u"off"_s;

// Returns -1 if no track is selected.
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

// The place in the menu, whose first entry is "Off".
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

} // namespace

const QList<double>& playbackSpeedOptions() {
    static const QList<double> options{0.5, 0.75, 1.0, 1.25, 1.5, 1.75, 2.0};
    return options;
}

const PlaybackResponse* openPlayback(const WindowState& state) {
    const auto& playback = state.playback;
    const bool isOpen =
        playback && playback->currentVideoName && !playback->currentVideoName->trimmed().isEmpty();
    return isOpen ? &*playback : nullptr;
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

DockWaiting dockWaiting(const QList<PlaybackCommand>& pending) {
    DockWaiting waiting;
    for (const PlaybackCommand& each : pending) {
        const QString& word = each.command;
        const bool isBack = each.offsetMs.value_or(0) < 0;
        waiting.play |= word == u"play"_s || word == u"pause"_s || word == u"resume"_s;
        waiting.stop |= word == u"stop"_s;
        waiting.back |= word == u"seek_by"_s && isBack;
        waiting.forward |= word == u"seek_by"_s && !isBack;
        waiting.position |= word == u"seek_to"_s;
        waiting.subtitle |= word == u"set_subtitle"_s;
        waiting.audio |= word == u"set_audio"_s;
        waiting.speed |= word == u"set_speed"_s;
    }
    return waiting;
}

DockPresenter::DockPresenter(WindowActions& actions, QObject* parent)
    : QObject(parent), m_actions(actions) {
    m_tick.setInterval(TimelineRefreshPeriod);
    m_tick.callOnTimeout(this, [this] { showTimeline(Motion::Glide); });
}

const PlaybackResponse* DockPresenter::playback() const {
    return openPlayback(m_shown);
}

void DockPresenter::show(const WindowState& state) {
    const WindowState before = std::exchange(m_shown, state);
    const PlaybackResponse* last = openPlayback(before);
    const PlaybackResponse* read = playback();
    const bool isSameVideo = read && last && read->currentVideoName == last->currentVideoName;
    const bool isNewReading = before.playbackReading != state.playbackReading;
    const auto& groups = state.content.groupedFiles;
    const bool isSameLibrary = before.content.groupedFiles.isSharedWith(groups);
    publish(this, m_isReachable, state.isReachable, &DockPresenter::isReachableChanged);
    publish(this, m_waiting, dockWaiting(state.pendingCommands), &DockPresenter::waitingChanged);
    if (isNewReading)
        takeReading(read, isSameVideo);
    if (isNewReading || !isSameLibrary) {
        QString title = m_state.title;
        if (read && !(isSameVideo && isSameLibrary)) // searching a large library takes time
            title = nowPlayingTitle(groups, *read->currentVideoName);
        publish(this, m_state, read ? dockState(*read, title) : DockState(),
                &DockPresenter::stateChanged);
    }
    if (isNewReading)
        showTimeline(Motion::Jump);
}

void DockPresenter::takeReading(const PlaybackResponse* read, bool isSameVideo) {
    if (!isSameVideo)
        m_timeline = {};
    else if (read->durationMs < 1)
        m_timeline = timelineDragCancelled(m_timeline, SteadyClock::now());
    if (read) {
        const ReportedPosition reported{read->positionMs, read->durationMs, read->isPlaying};
        const bool isSeekPending = isSameVideo && m_waiting.position;
        m_timeline = timelineReported(m_timeline, reported, SteadyClock::now(), isSeekPending);
    }
}

void DockPresenter::showTimeline(Motion motion) {
    const auto now = SteadyClock::now();
    const double fraction = displayedFraction(m_timeline, now);
    const PlaybackResponse* open = playback();
    const bool isMoving =
        open && open->isPlaying && open->durationMs >= 1 && !m_timeline.isSeeking && fraction < 1;
    if (isMoving != m_tick.isActive())
        isMoving ? m_tick.start() : m_tick.stop();
    DockTimeline shown;
    shown.fraction = fraction;
    shown.positionText = formatPlaybackTime(displayedPositionMs(m_timeline, now));
    shown.durationText = formatPlaybackTime(m_timeline.reported.durationMs);
    shown.canSeek = open && open->durationMs >= 1;
    if (isMoving && motion == Motion::Glide) {
        shown.glideMs = static_cast<int>(TimelineRefreshPeriod.count());
        shown.glideShare = shown.glideMs / static_cast<double>(open->durationMs);
    }
    publish(this, m_shownTimeline, shown, &DockPresenter::timelineChanged);
}

std::int64_t DockPresenter::positionMs() const {
    return displayedPositionMs(m_timeline, SteadyClock::now());
}

void DockPresenter::playOrPause() {
    if (const PlaybackResponse* open = playback())
        m_actions.togglePlayback(*open->currentVideoName);
}

void DockPresenter::stop() {
    m_actions.sendPlayback(PlaybackCommand::stop());
}

void DockPresenter::playHere() {
    if (const PlaybackResponse* open = playback())
        m_actions.startLocalPlayback(*open->currentVideoName, m_state.title, open->positionMs);
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
    m_timeline = timelineDropped(m_timeline, SteadyClock::now());
    showTimeline(Motion::Jump);
    m_actions.sendPlayback(PlaybackCommand::seekTo(target));
}

void DockPresenter::cancelDrag() {
    m_timeline = timelineDragCancelled(m_timeline, SteadyClock::now());
    showTimeline(Motion::Jump);
}

QString DockPresenter::timeAt(double fraction) const {
    return formatPlaybackTime(positionAt(m_timeline, fraction));
}

void DockPresenter::chooseSubtitle(int index) {
    const PlaybackResponse* open = playback();
    if (!open || index < 0 || index > open->subtitleTracks.size())
        return;
    const QString tag = index == 0 ? OffTag : open->subtitleTracks.at(index - 1).id;
    m_actions.sendPlayback(
        PlaybackCommand::setSubtitle(tag == OffTag ? std::nullopt : std::optional(tag)));
}

void DockPresenter::chooseAudio(int index) {
    const PlaybackResponse* open = playback();
    if (open && index >= 0 && index < open->audioTracks.size())
        m_actions.sendPlayback(PlaybackCommand::setAudio(open->audioTracks.at(index).id));
}

void DockPresenter::chooseSpeed(int index) {
    if (index >= 0 && index < playbackSpeedOptions().size())
        m_actions.sendPlayback(PlaybackCommand::setSpeed(playbackSpeedOptions().at(index)));
}

} // namespace quiv
