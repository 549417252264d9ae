#include "simulator/tv/player.h"

#include <algorithm>
#include <cmath>

namespace quiv::simulator {

using namespace Qt::StringLiterals;

namespace {

constexpr double Slowest = 0.25;
constexpr double Fastest = 4;

Player::Refusal nothingOpen() {
    return {409, u"No video is open."_s};
}

bool hasTrack(const std::vector<MediaTrack>& tracks, const QString& id) {
    return std::ranges::find(tracks, id, &MediaTrack::id) != tracks.end();
}

QJsonArray tracksJson(const std::vector<MediaTrack>& tracks, const QString& selectedId) {
    QJsonArray json;
    for (const MediaTrack& track : tracks) {
        QJsonObject object{{u"id"_s, track.id},
                           {u"label"_s, track.label},
                           {u"selected"_s, track.id == selectedId}};
        if (!track.language.isEmpty())
            object[u"language"_s] = track.language;
        json.append(object);
    }
    return json;
}

} // namespace

Player::Player(std::function<Instant()> now) : m_now(std::move(now)) {}

Player::OpenVideo* Player::openVideo() {
    if (!m_video)
        return nullptr;
    const Instant now = m_now();
    if (m_video->isPlaying) {
        const std::chrono::duration<double, std::milli> elapsed = now - m_video->positionAt;
        m_video->positionMs += elapsed.count() * m_video->speed;
        const auto end = static_cast<double>(m_video->details.durationMs);
        if (end > 0 && m_video->positionMs >= end) {
            m_video->positionMs = end;
            m_video->isPlaying = false;
        }
    }
    m_video->positionAt = now;
    return &*m_video;
}

void Player::play(const QString& name, const MediaDetails& details) {
    const std::scoped_lock lock(m_mutex);
    m_video = OpenVideo{.name = name,
                        .details = details,
                        .positionAt = m_now(),
                        .subtitleId = {},
                        .audioId = details.audio.empty() ? QString() : details.audio.front().id};
}

Player::Outcome Player::pause() {
    const std::scoped_lock lock(m_mutex);
    OpenVideo* video = openVideo();
    if (!video)
        return nothingOpen();
    video->isPlaying = false;
    return std::nullopt;
}

Player::Outcome Player::resume() {
    const std::scoped_lock lock(m_mutex);
    OpenVideo* video = openVideo();
    if (!video)
        return nothingOpen();
    video->isPlaying = true;
    return std::nullopt;
}

void Player::stop() {
    const std::scoped_lock lock(m_mutex);
    m_video.reset();
}

Player::Outcome Player::seekBy(qint64 offsetMs) {
    const std::scoped_lock lock(m_mutex);
    OpenVideo* video = openVideo();
    if (!video)
        return nothingOpen();
    video->positionMs = std::clamp(video->positionMs + static_cast<double>(offsetMs), 0.0,
                                   static_cast<double>(video->details.durationMs));
    return std::nullopt;
}

Player::Outcome Player::seekTo(qint64 positionMs) {
    const std::scoped_lock lock(m_mutex);
    OpenVideo* video = openVideo();
    if (!video)
        return nothingOpen();
    video->positionMs =
        static_cast<double>(std::clamp<qint64>(positionMs, 0, video->details.durationMs));
    return std::nullopt;
}

Player::Outcome Player::setSpeed(double speed) {
    const std::scoped_lock lock(m_mutex);
    OpenVideo* video = openVideo();
    if (!video)
        return nothingOpen();
    if (!(speed >= Slowest && speed <= Fastest))
        return Refusal{400, u"This speed is not possible."_s};
    video->speed = speed;
    return std::nullopt;
}

Player::Outcome Player::setSubtitle(const QString& trackId) {
    const std::scoped_lock lock(m_mutex);
    OpenVideo* video = openVideo();
    if (!video)
        return nothingOpen();
    if (!trackId.isEmpty() && !hasTrack(video->details.subtitles, trackId))
        return Refusal{400, u"There is no such subtitle track."_s};
    video->subtitleId = trackId;
    return std::nullopt;
}

Player::Outcome Player::setAudio(const QString& trackId) {
    const std::scoped_lock lock(m_mutex);
    OpenVideo* video = openVideo();
    if (!video)
        return nothingOpen();
    if (!hasTrack(video->details.audio, trackId))
        return Refusal{400, u"There is no such audio track."_s};
    video->audioId = trackId;
    return std::nullopt;
}

void Player::close(const QString& name) {
    const std::scoped_lock lock(m_mutex);
    if (m_video && m_video->name == name)
        m_video.reset();
}

QJsonObject Player::state() {
    const std::scoped_lock lock(m_mutex);
    const OpenVideo* video = openVideo();
    if (!video)
        return {{u"isPlaying"_s, false}, {u"positionMs"_s, 0}, {u"durationMs"_s, 0}};
    return {{u"currentVideoName"_s, video->name},
            {u"isPlaying"_s, video->isPlaying},
            {u"positionMs"_s, static_cast<qint64>(video->positionMs)},
            {u"durationMs"_s, video->details.durationMs},
            {u"playbackSpeed"_s, video->speed},
            {u"subtitleTracks"_s, tracksJson(video->details.subtitles, video->subtitleId)},
            {u"audioTracks"_s, tracksJson(video->details.audio, video->audioId)}};
}

} // namespace quiv::simulator
