#include "simulator/player.h"

#include <algorithm>
#include <cmath>

namespace quiv::simulator {

static constexpr double slowest = 0.25;
static constexpr double fastest = 4;

static Player::Refusal nothingOpen() {
    return {409, QStringLiteral("No video is open.")};
}

static bool hasTrack(const std::vector<MediaTrack>& tracks, const QString& id) {
    return std::ranges::find(tracks, id, &MediaTrack::id) != tracks.end();
}

static QJsonArray tracksJson(const std::vector<MediaTrack>& tracks, const QString& selectedId) {
    QJsonArray json;
    for (const MediaTrack& track : tracks) {
        QJsonObject object{{QStringLiteral("id"), track.id},
                           {QStringLiteral("label"), track.label},
                           {QStringLiteral("selected"), track.id == selectedId}};
        if (!track.language.isEmpty())
            object[QStringLiteral("language")] = track.language;
        json.append(object);
    }
    return json;
}

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
    if (!(speed >= slowest && speed <= fastest))
        return Refusal{400, QStringLiteral("This speed is not possible.")};
    video->speed = speed;
    return std::nullopt;
}

Player::Outcome Player::setSubtitle(const QString& trackId) {
    const std::scoped_lock lock(m_mutex);
    OpenVideo* video = openVideo();
    if (!video)
        return nothingOpen();
    if (!trackId.isEmpty() && !hasTrack(video->details.subtitles, trackId))
        return Refusal{400, QStringLiteral("There is no such subtitle track.")};
    video->subtitleId = trackId;
    return std::nullopt;
}

Player::Outcome Player::setAudio(const QString& trackId) {
    const std::scoped_lock lock(m_mutex);
    OpenVideo* video = openVideo();
    if (!video)
        return nothingOpen();
    if (!hasTrack(video->details.audio, trackId))
        return Refusal{400, QStringLiteral("There is no such audio track.")};
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
        return {{QStringLiteral("isPlaying"), false},
                {QStringLiteral("positionMs"), 0},
                {QStringLiteral("durationMs"), 0}};
    return {
        {QStringLiteral("currentVideoName"), video->name},
        {QStringLiteral("isPlaying"), video->isPlaying},
        {QStringLiteral("positionMs"), static_cast<qint64>(video->positionMs)},
        {QStringLiteral("durationMs"), video->details.durationMs},
        {QStringLiteral("playbackSpeed"), video->speed},
        {QStringLiteral("subtitleTracks"), tracksJson(video->details.subtitles, video->subtitleId)},
        {QStringLiteral("audioTracks"), tracksJson(video->details.audio, video->audioId)}};
}

} // namespace quiv::simulator
