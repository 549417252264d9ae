#include "ui/desktop/media_keys.h"

#include "ui/desktop/media_session.h"
#include "ui/display_format.h"
#include "ui/presenters/window_actions.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace quiv {

using namespace std::chrono_literals;

namespace {

using SteadyClock = std::chrono::steady_clock;

constexpr std::int64_t NoticeableMs = 1500; // between two answers of a TV that plays on

} // namespace

MediaKeys::MediaKeys(const Parts& parts, std::function<void()> raiseWindow)
    : m_parts(parts), m_raiseWindow(std::move(raiseWindow)), m_picture(parts.thumbnails) {
    connect(&m_picture, &MediaPicture::changed, this, &MediaKeys::update);
    connect(&parts.panel, &LocalPanelPresenter::controlsChanged, this, &MediaKeys::update);
    connect(&parts.panel, &LocalPanelPresenter::timelineChanged, this, &MediaKeys::update);
    parts.controls.setPlayer(this);
}

MediaKeys::~MediaKeys() {
    m_parts.controls.show(std::nullopt);
    m_parts.controls.setPlayer(nullptr);
}

void MediaKeys::show(const WindowState& state) {
    m_state = state;
    update();
}

void MediaKeys::update() {
    const std::optional<MediaSession> before = m_session;
    m_session = isHere() ? localMediaSession(m_state.localPlayback)
                         : remoteMediaSession(m_state, m_parts.dock.state().title);
    m_picture.load(pictureAddress());
    if (m_session)
        m_session->picture = m_picture.file();
    m_parts.controls.show(m_session);
    noticeJump(before);
}

QUrl MediaKeys::pictureAddress() const {
    if (!m_session || !m_state.thumbnails)
        return {};
    const QString name = isHere() ? m_state.localPlayback.localPlaybackSession->videoName
                                  : *m_state.playback->currentVideoName;
    return thumbnailURLForVideo(*m_state.thumbnails, name);
}

// The controls count on from what they were told: they hear of what time alone does not explain.
void MediaKeys::noticeJump(const std::optional<MediaSession>& before) {
    const auto now = SteadyClock::now();
    const std::int64_t position = m_session ? positionMs() : 0;
    const bool isSame = before && m_session && before->id == m_session->id;
    const auto passed =
        std::chrono::duration_cast<std::chrono::milliseconds>(now - m_anchor.instant);
    const double speed = before && before->isPlaying ? before->speed : 0;
    const std::int64_t expected =
        m_anchor.positionMs + std::llround(speed * static_cast<double>(passed.count()));
    m_anchor = {position, now};
    if (isSame && std::abs(position - expected) >= NoticeableMs)
        m_parts.controls.positionJumped();
}

std::int64_t MediaKeys::positionMs() const {
    if (!isHere())
        return m_parts.dock.positionMs();
    const auto& player = m_state.localPlayback.localPlayer;
    return player ? std::llround(player->state().position * 1000) : 0;
}

void MediaKeys::setPlaying(bool) {
    // Asked for only where it is a change.
    if (isHere())
        m_parts.panel.playOrPause();
    else
        m_parts.dock.playOrPause();
}

void MediaKeys::stop() {
    if (isHere())
        m_parts.panel.close();
    else
        m_parts.dock.stop();
}

void MediaKeys::seekBy(std::int64_t offsetMs) {
    if (isHere())
        seekTo(positionMs() + offsetMs);
    else
        m_parts.actions.sendPlayback(PlaybackCommand::seekBy(offsetMs));
}

void MediaKeys::seekTo(std::int64_t positionMs) {
    if (!m_session)
        return;
    const std::int64_t target = std::clamp<std::int64_t>(positionMs, 0, m_session->durationMs);
    if (!isHere())
        m_parts.actions.sendPlayback(PlaybackCommand::seekTo(target));
    else if (const auto& player = m_state.localPlayback.localPlayer)
        player->seek(static_cast<double>(target) / 1000);
}

void MediaKeys::setSpeed(double speed) {
    if (!isHere())
        m_parts.actions.sendPlayback(
            PlaybackCommand::setSpeed(nearestSpeedOption(playbackSpeedOptions(), speed)));
}

} // namespace quiv
