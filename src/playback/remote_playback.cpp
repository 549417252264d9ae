#include "playback/remote_playback.h"

#include "net/pairing.h"

#include <limits>

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

const auto PlaybackPath = u"api/playback"_s;
constexpr auto Unknown = std::numeric_limits<std::uint64_t>::max();

} // namespace

class RemotePlayback::Pending {
public:
    Pending(RemotePlayback& playback, PlaybackCommand command)
        : m_playback(playback), m_command(std::move(command)) {
        m_playback.m_pendingCommands.append(m_command);
        Q_EMIT m_playback.pendingChanged();
    }
    Pending(const Pending&) = delete;
    Pending& operator=(const Pending&) = delete;
    ~Pending() {
        m_playback.m_pendingCommands.removeOne(m_command);
        Q_EMIT m_playback.pendingChanged();
    }

private:
    RemotePlayback& m_playback;
    const PlaybackCommand m_command;
};

PlaybackCommand toggleCommand(const std::optional<PlaybackResponse>& playback,
                              const QString& videoName) {
    if (!playback || playback->currentVideoName != videoName)
        return PlaybackCommand::play(videoName);
    return playback->isPlaying ? PlaybackCommand::pause() : PlaybackCommand::resume();
}

RemotePlayback::RemotePlayback(const TvAccess& tvs, Pairing& pairing, QObject* parent)
    : QObject(parent), m_tvs(tvs), m_pairing(pairing) {}

Task<> RemotePlayback::refreshPlayback(Errors errors) {
    const auto tv = m_tvs.current();
    if (!tv)
        co_return;
    const std::uint64_t reading = m_readingsBegun++;
    try {
        PlaybackResponse read = co_await tv->get<PlaybackResponse>(PlaybackPath);
        if (reading < m_oldestValidReading)
            co_return;
        m_oldestValidReading = reading + 1;
        m_playback = std::move(read);
        Q_EMIT playbackRead();
    } catch (const Error& error) {
        if (errors == Errors::Reported)
            tv->say(failureMessage(u"Failed to fetch playback: "_s, error));
    }
}

Task<bool> RemotePlayback::sendPlaybackCommand(PlaybackCommand command, ShowStatus showStatus) {
    const auto tv = m_tvs.current();
    if (!tv)
        co_return false;
    const bool isAllowed = co_await m_pairing.ensureControlPairing(u"playback"_s);
    if (!isAllowed)
        co_return false;
    try {
        co_await post(*tv, command);
    } catch (const Error& error) {
        tv->say(failureMessage(u"Playback command failed: "_s, error));
        co_return false;
    }
    m_oldestValidReading = m_readingsBegun;
    m_tasks.add(refreshPlayback(Errors::Quiet));
    if (showStatus == ShowStatus::Yes)
        tv->say(u"Sent playback command: "_s + command.command);
    co_return true;
}

Task<> RemotePlayback::post(Tv tv, PlaybackCommand command) {
    m_oldestValidReading = m_readingsBegun;
    const Pending pending(*this, command);
    co_await tv.post(PlaybackPath, queryItems(command));
}

void RemotePlayback::reset() {
    m_toggleShownBy = 0;
    m_pendingCommands.clear();
    m_playback.reset();
    Q_EMIT playbackRead();
}

void RemotePlayback::togglePlayback(const QString& videoName) {
    if (m_toggleShownBy > m_oldestValidReading)
        return;
    m_toggleShownBy = Unknown;
    m_tasks.add(toggle(toggleCommand(m_playback, videoName)));
}

Task<> RemotePlayback::toggle(PlaybackCommand command) {
    const bool isAccepted = co_await sendPlaybackCommand(std::move(command), ShowStatus::Yes);
    m_toggleShownBy = isAccepted ? m_oldestValidReading + 1 : 0;
}

void RemotePlayback::send(const PlaybackCommand& command) {
    m_tasks.add(sendShown(command));
}

Task<> RemotePlayback::sendShown(PlaybackCommand command) {
    co_await sendPlaybackCommand(std::move(command), ShowStatus::Yes);
}

} // namespace quiv
