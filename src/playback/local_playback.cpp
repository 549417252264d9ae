#include "playback/local_playback.h"

#include "net/pairing.h"
#include "platform/publish.h"
#include "platform/uuid.h"

#include <cmath>

namespace quiv {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const auto StreamPath = u"api/files/stream"_s;
constexpr auto ProbeTimeout = 12s;
constexpr std::int64_t ProbeReplyLimit = 64 << 10; // a TV that takes no ranges sends the whole film

bool isStreamed(int status) {
    return status == 200 || status == 206;
}

// Only a reply that would have been a success is cut off at its limit.
bool isWholeFilm(const Error& error) {
    const auto* http = dynamic_cast<const HttpError*>(&error);
    return http && http->code() == HttpErrorCode::ReplyTooLarge;
}

QString decodingFailure(const QString& detail) {
    const QString reason = detail.isEmpty() ? QString() : u" (%1)"_s.arg(detail);
    return u"macOS could not decode this stream"_s + reason + u". Open in VLC or use Play on TV."_s;
}

} // namespace

LocalPlayback::LocalPlayback(const TvAccess& tvs, Pairing& pairing, AuthTokens& tokens,
                             RemotePlayback& remote, const Ports& ports,
                             StatusText downloadErrorText, QObject* parent)
    : QObject(parent),
      m_tvs(tvs),
      m_pairing(pairing),
      m_tokens(tokens),
      m_remote(remote),
      m_ports(ports),
      m_downloadErrorText(downloadErrorText) {}

LocalPlayback::~LocalPlayback() = default;

std::optional<std::int64_t> LocalPlayback::localPlaybackPositionMs() const {
    const double seconds = m_localPlayer ? m_localPlayer->currentTime() : NAN;
    return std::isfinite(seconds) ? std::optional(std::int64_t(std::llround(seconds * 1000)))
                                  : std::nullopt;
}

void LocalPlayback::startLocalPlayback(const QString& videoName, const QString& displayTitle,
                                       std::optional<std::int64_t> startPositionMs) {
    m_start = start(videoName, displayTitle, startPositionMs);
}

void LocalPlayback::startPrimaryPlayback(const QString& videoName, const QString& displayTitle) {
    const auto& playback = m_remote.playback();
    const QString onTv = playback ? playback->currentVideoName.value_or(QString()) : QString();
    if (!onTv.trimmed().isEmpty())
        return m_remote.togglePlayback(videoName);
    const bool isKnown = playback && playback->currentVideoName == videoName;
    startLocalPlayback(videoName, displayTitle,
                       isKnown ? std::optional(playback->positionMs) : std::nullopt);
}

Task<> LocalPlayback::start(QString videoName, QString displayTitle,
                            std::optional<std::int64_t> startPositionMs) {
    const auto tv = m_tvs.current();
    if (!tv)
        co_return;
    const bool isAllowed = co_await m_pairing.ensureControlPairing(u"local playback"_s);
    if (!isAllowed)
        co_return;
    LocalPlaybackState cleared = m_state;
    cleared.localPlaybackErrorMessage.reset();
    cleared.externalPlayerPrompt.reset();
    change(std::move(cleared));
    const std::optional<QUrl> streamURL = co_await probeStreamEndpoint(*tv, videoName);
    if (!streamURL)
        co_return;
    const QString title = displayTitle.trimmed();
    LocalPlaybackSession session{randomUuid(), videoName, title.isEmpty() ? videoName : title,
                                 *streamURL};
    co_await stopTv();
    OpenedPlayer opened = co_await m_ports.players.open(*streamURL);
    tv->requireSelected();
    m_pendingLocalStartPositionMs =
        startPositionMs.value_or(0) >= 1 ? startPositionMs : std::nullopt;
    show(session, std::move(opened));
    tv->say(u"Streaming on this Mac: "_s + session.displayTitle);
}

Task<std::optional<QUrl>> LocalPlayback::probeStreamEndpoint(Tv tv, QString videoName) {
    HttpRequest request = tv.request("GET", StreamPath, {{u"name"_s, videoName}});
    request.headers = {{"Range", "bytes=0-1"}};
    request.timeouts.total = ProbeTimeout;
    request.replyLimit = ProbeReplyLimit;
    QString failure;
    try {
        const TvReply reply = co_await tv.send(std::move(request));
        if (!isStreamed(reply.status)) {
            failure = m_downloadErrorText(reply.status);
            tv.refuse(reply, failure);
        }
    } catch (const Error& error) {
        if (failure.isEmpty() && !isWholeFilm(error))
            failure = u"Could not reach stream endpoint: "_s + error.description();
    }
    if (!failure.isEmpty()) {
        fail(tv, failure, failure);
        co_return std::nullopt;
    }
    const std::optional<QUrl> url = buildStreamURL(videoName, tv.base());
    if (!url)
        fail(tv, u"Could not build stream URL."_s, u"could not build stream URL."_s);
    co_return url;
}

std::optional<QUrl> LocalPlayback::buildStreamURL(const QString& videoName, const QUrl& base) {
    const QueryItems items = QueryItems{{u"name"_s, videoName}} + m_tokens.authQueryItems(base);
    const QUrl url = QUrl::fromEncoded(tvRequest("GET", base, StreamPath, items).url);
    return url.isValid() ? std::optional(url) : std::nullopt;
}

Task<> LocalPlayback::stopTv() {
    if (!m_remote.playback() || !m_remote.playback()->currentVideoName)
        co_return;
    co_await m_remote.sendPlaybackCommand(PlaybackCommand::stop(), RemotePlayback::ShowStatus::No);
    co_await m_remote.refreshPlayback(Errors::Quiet);
}

void LocalPlayback::show(LocalPlaybackSession session, OpenedPlayer opened) {
    tearDownPlayer();
    m_localPlayer = std::move(opened.player);
    LocalPlaybackState state;
    state.localPlaybackSession = std::move(session);
    state.localPlayer = std::move(opened.screen);
    change(std::move(state));
    m_screenObservation = m_state.localPlayer->observeState([this] { keepAwake(); });
    m_localPlayer->play();
    keepAwake();
    m_localPlayerItemObservation = m_localPlayer->observeStatus(
        [this](const ItemReport& report) { handleLocalItemStatus(report); });
}

void LocalPlayback::tearDownPlayer() {
    m_failure.cancel();
    m_localPlayerItemObservation.reset();
    m_screenObservation.reset();
    if (m_localPlayer)
        m_localPlayer->pause();
    m_localPlayer.reset();
    m_localSubtitleOptionByID.clear();
    m_localAudioOptionByID.clear();
    m_ports.sleep.setInhibited(false);
}

void LocalPlayback::keepAwake() {
    m_ports.sleep.setInhibited(m_state.localPlayer->state().isPlaying);
}

void LocalPlayback::handleLocalItemStatus(const ItemReport& report) {
    switch (report.status) {
    case ItemStatus::Unknown:
        break;
    case ItemStatus::ReadyToPlay:
        becomeReady();
        break;
    case ItemStatus::Failed:
        m_failure = reportFailure(report.error.trimmed());
        break;
    }
}

void LocalPlayback::becomeReady() {
    m_failure.cancel();
    rebuildLocalMediaOptions();
    const auto position = std::exchange(m_pendingLocalStartPositionMs, std::nullopt);
    if (position)
        m_localPlayer->seek(double(*position) / 1000);
}

Task<> LocalPlayback::reportFailure(QString detail) {
    const std::optional<PlayerProgram> vlc = co_await m_ports.externalPlayer.find();
    LocalPlaybackState state = m_state;
    if (const auto& session = state.localPlaybackSession) {
        state.externalPlayerPrompt = ExternalPlayerPrompt{session->streamURL, session->videoName,
                                                          session->displayTitle, vlc.has_value()};
    }
    const QString message = decodingFailure(detail);
    state.localPlaybackErrorMessage = message;
    change(std::move(state));
    m_tvs.say(failureMessage(u"Local playback failed: "_s + message));
}

void LocalPlayback::rebuildLocalMediaOptions() {
    LocalMediaChoices subtitles = localSubtitleChoices(m_localPlayer->group(MediaKind::Subtitles));
    LocalMediaChoices audio = localAudioChoices(m_localPlayer->group(MediaKind::Audio));
    m_localSubtitleOptionByID = std::move(subtitles.optionByID);
    m_localAudioOptionByID = std::move(audio.optionByID);
    LocalPlaybackState state = m_state;
    state.localPlaybackErrorMessage.reset();
    state.externalPlayerPrompt.reset();
    state.localSubtitleOptions = std::move(subtitles.options);
    state.selectedLocalSubtitleID = std::move(subtitles.selectedID);
    state.localAudioOptions = std::move(audio.options);
    state.selectedLocalAudioID = std::move(audio.selectedID);
    change(std::move(state));
}

void LocalPlayback::selectLocalSubtitle(const QString& id) {
    const QString off = QString::fromUtf16(LocalSubtitlesOff);
    const bool hasGroup = m_localPlayer && m_localPlayer->group(MediaKind::Subtitles);
    const auto option = m_localSubtitleOptionByID.constFind(id);
    LocalPlaybackState state = m_state;
    if (!hasGroup || id == off) {
        if (hasGroup)
            m_localPlayer->select(MediaKind::Subtitles, std::nullopt);
        state.selectedLocalSubtitleID = off;
    } else if (option != m_localSubtitleOptionByID.cend()) {
        m_localPlayer->select(MediaKind::Subtitles, *option);
        state.selectedLocalSubtitleID = id;
    }
    change(std::move(state));
}

void LocalPlayback::selectLocalAudio(const QString& id) {
    const auto option = m_localAudioOptionByID.constFind(id);
    if (!m_localPlayer || option == m_localAudioOptionByID.cend())
        return;
    m_localPlayer->select(MediaKind::Audio, *option);
    LocalPlaybackState state = m_state;
    state.selectedLocalAudioID = id;
    change(std::move(state));
}

void LocalPlayback::openStreamInVLC() {
    if (m_state.externalPlayerPrompt)
        m_opening.add(openInVlc(*m_state.externalPlayerPrompt));
}

Task<> LocalPlayback::openInVlc(ExternalPlayerPrompt prompt) {
    const std::optional<PlayerProgram> vlc = co_await m_ports.externalPlayer.find();
    if (!vlc) {
        m_tvs.say(failureMessage(u"VLC is not installed."_s));
        co_return;
    }
    try {
        co_await m_ports.externalPlayer.open(*vlc, prompt.streamURL);
        m_tvs.say(u"Opened in VLC: "_s + prompt.displayTitle);
    } catch (const Error& error) {
        m_tvs.say(failureMessage(u"Could not open VLC: "_s, error));
    }
}

void LocalPlayback::playLocalSessionOnTV() {
    if (!m_state.localPlaybackSession || !m_handOver.isDone())
        return;
    m_start.cancel();
    m_handOver = handOver(*m_state.localPlaybackSession, localPlaybackPositionMs());
}

Task<> LocalPlayback::handOver(LocalPlaybackSession session,
                               std::optional<std::int64_t> positionMs) {
    const auto quiet = RemotePlayback::ShowStatus::No;
    const bool isAccepted =
        co_await m_remote.sendPlaybackCommand(PlaybackCommand::play(session.videoName), quiet);
    if (!isAccepted)
        co_return;
    if (positionMs.value_or(0) >= 1)
        co_await m_remote.sendPlaybackCommand(PlaybackCommand::seekTo(*positionMs), quiet);
    if (m_state.localPlaybackSession == session)
        closeLocalPlayback();
    m_tvs.say(u"Playing on TV: "_s + session.displayTitle);
}

void LocalPlayback::closeLocalPlayback() {
    m_start.cancel();
    tearDownPlayer();
    change({});
}

void LocalPlayback::fail(const Tv& tv, const QString& message, const QString& status) {
    LocalPlaybackState state = m_state;
    state.localPlaybackErrorMessage = message;
    change(std::move(state));
    tv.say(failureMessage(u"Local playback failed: "_s + status));
}

void LocalPlayback::change(LocalPlaybackState state) {
    publish(this, m_state, std::move(state), &LocalPlayback::stateChanged);
}

} // namespace quiv
