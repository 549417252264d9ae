#include "playback/remote_playback.h"

#include "net/pairing.h"
#include "net/request_layer.h"
#include "net/status_line.h"

namespace quiv {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const auto PlaybackPath = u"api/playback"_s;

} // namespace

PlaybackCommand toggleCommand(const std::optional<PlaybackResponse>& playback,
                              const QString& videoName) {
    if (!playback || playback->currentVideoName != videoName)
        return PlaybackCommand::play(videoName);
    return playback->isPlaying ? PlaybackCommand::pause() : PlaybackCommand::resume();
}

RemotePlayback::RemotePlayback(RequestLayer& requests, Pairing& pairing,
                               const SelectedDevice& selected, StatusLine& status, QObject* parent)
    : QObject(parent),
      m_requests(requests),
      m_pairing(pairing),
      m_selected(selected),
      m_status(status) {}

Task<> RemotePlayback::refreshPlayback(Errors errors) {
    const auto base = m_selected.baseURL();
    if (!base)
        co_return;
    const SelectedDevice::Guard guard(m_selected);
    const std::uint64_t reading = m_readingsBegun++;
    try {
        auto fetching = m_requests.fetchJSON<PlaybackResponse>(*base, PlaybackPath, 60s, guard);
        PlaybackResponse read = co_await std::move(fetching);
        if (!guard.isCurrent() || reading < m_oldestValidReading)
            co_return;
        m_oldestValidReading = reading + 1;
        m_playback = std::move(read);
        Q_EMIT playbackRead();
    } catch (const Error& error) {
        if (guard.isCurrent() && errors == Errors::Reported)
            m_status.post(u"Failed to fetch playback: "_s + error.description());
    }
}

Task<bool> RemotePlayback::sendPlaybackCommand(PlaybackCommand command, ShowStatus showStatus) {
    if (!m_selected.isSelected())
        co_return false;
    const SelectedDevice::Guard guard(m_selected);
    auto asking = m_pairing.ensureControlPairing(u"playback"_s);
    const bool isAllowed = co_await std::move(asking);
    if (!isAllowed || !guard.isCurrent())
        co_return false;
    try {
        auto posting =
            m_requests.post(m_selected.baseURL(), PlaybackPath, queryItems(command), guard);
        co_await std::move(posting);
    } catch (const Error& error) {
        if (guard.isCurrent())
            m_status.post(u"Playback command failed: "_s + error.description());
        co_return false;
    }
    if (guard.isCurrent()) {
        m_oldestValidReading = m_readingsBegun;
        m_tasks.add(refreshPlayback(Errors::Quiet));
        if (showStatus == ShowStatus::Yes)
            m_status.post(u"Sent playback command: "_s + command.command);
    }
    co_return true;
}

void RemotePlayback::reset() {
    m_playback.reset();
    Q_EMIT playbackRead();
}

void RemotePlayback::togglePlayback(const QString& videoName) {
    send(toggleCommand(m_playback, videoName));
}

void RemotePlayback::send(const PlaybackCommand& command) {
    m_tasks.add(sendShown(command));
}

Task<> RemotePlayback::sendShown(PlaybackCommand command) {
    auto sending = sendPlaybackCommand(std::move(command), ShowStatus::Yes);
    co_await std::move(sending);
}

} // namespace quiv
