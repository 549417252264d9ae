#pragma once

#include "net/auth_tokens.h"
#include "net/tv.h"
#include "platform/async/task.h"
#include "platform/async/task_set.h"
#include "platform/player/external_player.h"
#include "platform/player/player_screen.h"
#include "platform/desktop/sleep_inhibitor.h"
#include "playback/local_media_options.h"
#include "playback/remote_playback.h"

#include <QObject>
#include <QString>
#include <QUrl>

#include <cstdint>
#include <memory>
#include <optional>

namespace quiv {

class Pairing;

// A video of the TV's that plays on this computer.
struct LocalPlaybackSession {
    QString id; // new for each session
    QString videoName;
    QString displayTitle;
    QUrl streamURL; // carries this client's credentials

    bool operator==(const LocalPlaybackSession&) const = default;
};

// The offer to open a stream, which this computer's player cannot play, in another player.
struct ExternalPlayerPrompt {
    QUrl streamURL;
    QString videoName;
    QString displayTitle;
    bool vlcAvailable = false;

    bool operator==(const ExternalPlayerPrompt&) const = default;
};

// What plays on this computer.
struct LocalPlaybackState {
    std::optional<LocalPlaybackSession> localPlaybackSession; // nullopt when nothing does
    std::shared_ptr<PlayerScreen> localPlayer;
    std::optional<QString> localPlaybackErrorMessage;
    std::optional<ExternalPlayerPrompt> externalPlayerPrompt;
    QList<LocalMediaOption> localSubtitleOptions;
    QList<LocalMediaOption> localAudioOptions;
    QString selectedLocalSubtitleID = QString::fromUtf16(LocalSubtitlesOff);
    QString selectedLocalAudioID; // empty when there is none

    bool operator==(const LocalPlaybackState&) const = default;
};

// Plays a video of the selected TV on this computer, one at a time, and hands videos over between
// the two screens.
//
// The TV is asked for the first bytes before the player is involved, so that a refusal is said in
// the TV's words. A start that fails leaves alone what plays; one that succeeds replaces it. The
// newest start, hand-over or close counts: it drops a start that is still under way.
class LocalPlayback : public QObject {
    Q_OBJECT

public:
    // What it plays with; each outlives it.
    struct Ports {
        MediaPlayers& players;
        ExternalPlayer& externalPlayer;
        SleepInhibitor& sleep;
    };
    // The message of a failed download with this status.
    using StatusText = QString (*)(int status);

    LocalPlayback(const TvAccess& tvs, Pairing& pairing, AuthTokens& tokens, RemotePlayback& remote,
                  const Ports& ports, StatusText downloadErrorText, QObject* parent = nullptr);
    ~LocalPlayback() override;

    const LocalPlaybackState& state() const { return m_state; }
    // Where the local player is, rounded; nullopt without a player or while it does not know.
    std::optional<std::int64_t> localPlaybackPositionMs() const;

    void startLocalPlayback(const QString& videoName, const QString& displayTitle,
                            std::optional<std::int64_t> startPositionMs);
    // What a row's play control does: controls the TV while that has a video open, else plays here.
    void startPrimaryPlayback(const QString& videoName, const QString& displayTitle);
    // An id that is not among the options changes nothing.
    void selectLocalSubtitle(const QString& id);
    void selectLocalAudio(const QString& id);
    void openStreamInVLC();
    // Goes on where the local player is; that plays until the TV has accepted.
    void playLocalSessionOnTV();
    void closeLocalPlayback();

Q_SIGNALS:
    void stateChanged();

private:
    Task<> start(QString videoName, QString displayTitle,
                 std::optional<std::int64_t> startPositionMs);
    Task<std::optional<QUrl>> probeStreamEndpoint(Tv tv, QString videoName);
    std::optional<QUrl> buildStreamURL(const QString& videoName, const QUrl& base);
    Task<> stopTv();
    void show(LocalPlaybackSession session, OpenedPlayer opened);
    void tearDownPlayer();
    void handleLocalItemStatus(const ItemReport& report);
    void becomeReady();
    Task<> reportFailure(QString detail);
    void rebuildLocalMediaOptions();
    void keepAwake();
    Task<> openInVlc(ExternalPlayerPrompt prompt);
    Task<> handOver(LocalPlaybackSession session, std::optional<std::int64_t> positionMs);
    void fail(const Tv& tv, const QString& message, const QString& status);
    void change(LocalPlaybackState state);

    const TvAccess m_tvs;
    Pairing& m_pairing;
    AuthTokens& m_tokens;
    RemotePlayback& m_remote;
    const Ports m_ports;
    const StatusText m_downloadErrorText;
    LocalPlaybackState m_state;
    std::shared_ptr<MediaPlayer> m_localPlayer;
    std::optional<std::int64_t> m_pendingLocalStartPositionMs;
    QHash<QString, std::int64_t> m_localSubtitleOptionByID;
    QHash<QString, std::int64_t> m_localAudioOptionByID;
    std::unique_ptr<Observation> m_localPlayerItemObservation;
    std::unique_ptr<Observation> m_screenObservation;
    Task<> m_start;
    Task<> m_failure; // of the player that is there
    Task<> m_handOver;
    TaskSet m_opening; // other players
};

} // namespace quiv
