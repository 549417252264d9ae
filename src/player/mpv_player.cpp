#include "player/mpv_player.h"

#include "player/gl_video.h"
#include "player/software_video.h"

#include <QPointer>

#include <algorithm>
#include <array>
#include <utility>

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

// What requests are recognised by when they are answered.
constexpr std::uint64_t SeekRequest = 100;
constexpr std::uint64_t TracksRequest = 101;
constexpr std::uint64_t WidthRequest = 102;

constexpr double TellsPerSecond = 4; // of how far a video has come

double numberOf(const mpv_event_property& value, double otherwise) {
    return value.format == MPV_FORMAT_DOUBLE ? *static_cast<const double*>(value.data) : otherwise;
}

bool flagOf(const mpv_event_property& value) {
    return value.format == MPV_FORMAT_FLAG && *static_cast<const int*>(value.data) != 0;
}

// Whether somebody who looks would see the difference.
bool isSameToSee(ScreenState before, const ScreenState& now) {
    const auto step = [](double seconds) {
        return std::floor(seconds * TellsPerSecond);
    };
    if (step(before.position) == step(now.position))
        before.position = now.position;
    if (step(before.bufferedUntil) == step(now.bufferedUntil))
        before.bufferedUntil = now.bufferedUntil;
    return before == now;
}

} // namespace

MpvPlayer::MpvPlayer(const StreamAddress& address, Drawing drawing)
    : m_drawing(drawing), m_core(std::make_shared<MpvCore>(address, drawing)) {
    m_screen.isBuffering = true;
    mpv_handle* player = m_core->handle();
    if (!player) {
        QMetaObject::invokeMethod(
            this, [this] { fail(u"the player could not be set up"_s); }, Qt::QueuedConnection);
        return;
    }
    mpv_observe_property(player, Time, "time-pos", MPV_FORMAT_DOUBLE);
    mpv_observe_property(player, Duration, "duration", MPV_FORMAT_DOUBLE);
    mpv_observe_property(player, Cached, "demuxer-cache-time", MPV_FORMAT_DOUBLE);
    mpv_observe_property(player, Tracks, "track-list", MPV_FORMAT_NODE);
    mpv_observe_property(player, AtEnd, "eof-reached", MPV_FORMAT_FLAG);
    mpv_observe_property(player, Stalled, "paused-for-cache", MPV_FORMAT_FLAG);
    mpv_observe_property(player, Seeking, "seeking", MPV_FORMAT_FLAG);
    mpv_observe_property(player, Width, "dwidth", MPV_FORMAT_INT64);
    mpv_set_wakeup_callback(player, &MpvPlayer::wake, this);
}

MpvPlayer::~MpvPlayer() {
    if (!m_core->handle())
        return;
    mpv_set_wakeup_callback(m_core->handle(), nullptr, nullptr);
    m_core->setFlag("mute", true);
    m_core->command({"stop"});
}

std::unique_ptr<Observation>
MpvPlayer::observeStatus(std::function<void(const ItemReport&)> observer) {
    observer(m_status);
    return m_statusObservers.add(std::move(observer));
}

std::unique_ptr<Observation> MpvPlayer::observeState(std::function<void()> observer) {
    return m_stateObservers.add(std::move(observer));
}

QQuickItem* MpvPlayer::makeVideo() {
    if (!m_core->handle())
        return nullptr;
    const QPointer<MpvPlayer> self(this);
    const auto onReady = [self](bool canBeDrawn) {
        if (self)
            self->open(canBeDrawn);
    };
    if (m_drawing == Drawing::OpenGl)
        return new GlVideo(m_core, onReady);
    auto* const video = new SoftwareVideo(m_core);
    onReady(video->isReady());
    return video;
}

void MpvPlayer::open(bool canBeDrawn) {
    if (canBeDrawn)
        m_core->command({"loadfile", MpvCore::StreamName});
    else
        fail(u"the graphics driver cannot show it"_s);
}

void MpvPlayer::wake(void* player) {
    auto* const self = static_cast<MpvPlayer*>(player);
    if (!self->m_isWoken.exchange(true))
        QMetaObject::invokeMethod(
            self, [self] { self->readEvents(); }, Qt::QueuedConnection);
}

void MpvPlayer::readEvents() {
    m_isWoken = false;
    while (true) {
        const mpv_event* event = mpv_wait_event(m_core->handle(), 0);
        if (event->event_id == MPV_EVENT_NONE)
            break;
        take(*event);
    }
    tellState();
}

void MpvPlayer::take(const mpv_event& event) {
    switch (event.event_id) {
    case MPV_EVENT_FILE_LOADED:
        mpv_get_property_async(m_core->handle(), TracksRequest, "track-list", MPV_FORMAT_NODE);
        break;
    case MPV_EVENT_GET_PROPERTY_REPLY:
        if (event.reply_userdata == TracksRequest) {
            takeTracks(*static_cast<const mpv_event_property*>(event.data));
            becomeReady();
        } else if (event.reply_userdata == WidthRequest && event.error < 0) {
            fail(u"its pictures could not be decoded"_s);
        }
        break;
    case MPV_EVENT_PROPERTY_CHANGE:
        takeProperty(static_cast<Property>(event.reply_userdata),
                     *static_cast<const mpv_event_property*>(event.data));
        break;
    case MPV_EVENT_COMMAND_REPLY:
        if (event.reply_userdata == SeekRequest) {
            m_isSeekSent = false;
            if (std::exchange(m_isSeekNewer, false))
                sendSeek();
        }
        break;
    case MPV_EVENT_PLAYBACK_RESTART:
        restarted();
        break;
    case MPV_EVENT_END_FILE:
        ended(*static_cast<const mpv_event_end_file*>(event.data));
        break;
    default:
        break;
    }
}

void MpvPlayer::takeProperty(Property property, const mpv_event_property& value) {
    switch (property) {
    case Time:
        m_time = numberOf(value, NAN);
        break;
    case Duration:
        m_screen.duration = std::max(0.0, numberOf(value, 0));
        break;
    case Cached:
        m_screen.bufferedUntil = std::max(0.0, numberOf(value, 0));
        break;
    case Tracks:
        takeTracks(value);
        break;
    case AtEnd:
        m_isAtEnd = flagOf(value);
        if (m_isAtEnd)
            reachedEnd();
        break;
    case Stalled:
        m_isStalled = flagOf(value);
        break;
    case Seeking:
        m_isSeeking = flagOf(value);
        break;
    case Width:
        m_screen.hasPicture = m_screen.hasPicture || value.format == MPV_FORMAT_INT64;
        break;
    }
}

void MpvPlayer::takeTracks(const mpv_event_property& value) {
    if (value.format == MPV_FORMAT_NODE)
        m_tracks = tracksOf(*static_cast<const mpv_node*>(value.data));
}

void MpvPlayer::becomeReady() {
    if (m_status.status != ItemStatus::Unknown)
        return;
    m_status.status = ItemStatus::ReadyToPlay;
    m_statusObservers.tell(m_status);
    m_core->setFlag("pause", !m_screen.isPlaying);
}

// A video whose pictures nobody could decode must not pass for a black one.
void MpvPlayer::restarted() {
    if (!m_isSeekSent)
        m_target.reset();
    m_hasStarted = true;
    const bool hasVideo =
        std::ranges::find(m_tracks, Track::Kind::Video, &Track::kind) != m_tracks.end();
    if (hasVideo && !m_screen.hasPicture)
        mpv_get_property_async(m_core->handle(), WidthRequest, "dwidth", MPV_FORMAT_INT64);
}

void MpvPlayer::reachedEnd() {
    if (const QString fault = m_core->streamFault(); !fault.isEmpty())
        fail(fault);
    m_screen.isPlaying = false;
}

void MpvPlayer::ended(const mpv_event_end_file& end) {
    const QString fault = m_core->streamFault();
    if (!fault.isEmpty())
        fail(fault);
    else if (end.reason == MPV_END_FILE_REASON_ERROR)
        fail(QString::fromUtf8(mpv_error_string(end.error)));
    else if (end.reason == MPV_END_FILE_REASON_EOF && !m_hasStarted)
        fail({});
}

void MpvPlayer::fail(const QString& error) {
    if (m_status.status == ItemStatus::Failed)
        return;
    m_status = {ItemStatus::Failed, error};
    m_screen.isPlaying = false;
    if (m_core->handle())
        m_core->setFlag("pause", true);
    m_statusObservers.tell(m_status);
    tellState();
}

void MpvPlayer::setPlaying(bool isPlaying) {
    m_screen.isPlaying = isPlaying && m_status.status != ItemStatus::Failed;
    if (m_status.status == ItemStatus::ReadyToPlay) {
        if (isPlaying && m_isAtEnd)
            seek(0);
        m_core->setFlag("pause", !isPlaying);
    }
    tellState();
}

// Of seeks that come while one is under way, only the last counts.
void MpvPlayer::seek(double seconds) {
    if (m_status.status != ItemStatus::ReadyToPlay)
        return;
    m_target = std::max(0.0, seconds);
    m_isSeekNewer = m_isSeekSent;
    if (!m_isSeekSent)
        sendSeek();
    tellState();
}

void MpvPlayer::sendSeek() {
    m_isSeekSent = true;
    const QByteArray time = QByteArray::number(*m_target, 'f', 6);
    std::array words{"seek", time.constData(), "absolute+exact", static_cast<const char*>(nullptr)};
    mpv_command_async(m_core->handle(), SeekRequest, words.data());
}

std::optional<MediaGroup> MpvPlayer::group(MediaKind kind) const {
    return groupOf(m_tracks,
                   kind == MediaKind::Audio ? Track::Kind::Audio : Track::Kind::Subtitles);
}

void MpvPlayer::select(MediaKind kind, std::optional<std::int64_t> option) {
    const QByteArray id = option ? QByteArray::number(*option) : QByteArray("no");
    m_core->set(kind == MediaKind::Audio ? "aid" : "sid", id.constData());
}

void MpvPlayer::setVolume(double volume) {
    m_screen.volume = std::clamp(volume, 0.0, 1.0);
    if (m_core->handle())
        m_core->setNumber("volume", 100 * m_screen.volume);
    tellState();
}

void MpvPlayer::setMuted(bool isMuted) {
    m_screen.isMuted = isMuted;
    if (m_core->handle())
        m_core->setFlag("mute", isMuted);
    tellState();
}

void MpvPlayer::tellState() {
    const double time = currentTime();
    m_screen.position = std::isfinite(time) ? time : 0;
    m_screen.isBuffering = m_status.status != ItemStatus::Failed &&
                           (!m_hasStarted || m_isStalled || m_isSeeking || m_target);
    if (isSameToSee(m_told, m_screen))
        return;
    m_told = m_screen;
    m_stateObservers.tell();
}

} // namespace quiv
