#pragma once

#include "net/tv.h"
#include "net/wire_records.h"
#include "platform/async/task.h"
#include "platform/async/task_set.h"
#include "playback/playback_command.h"

#include <QList>
#include <QObject>
#include <QString>

#include <cstdint>
#include <optional>

namespace quiv {

class Pairing;

// What the selected TV plays, and the commands that change it.
//
// The TV alone knows: no command is assumed to have taken effect, and each that the TV accepts is
// followed by a reading. Commands are not serialised. A reading that began before a newer one,
// before a command was sent or before an accepted one was answered, is out of date and dropped.
class RemotePlayback : public QObject {
    Q_OBJECT

public:
    enum class ShowStatus { Yes, No };

    RemotePlayback(const TvAccess& tvs, Pairing& pairing, QObject* parent = nullptr);

    // As last read; nullopt before the first reading.
    const std::optional<PlaybackResponse>& playback() const { return m_playback; }

    // That the TV has not answered, oldest first.
    const QList<PlaybackCommand>& pendingCommands() const { return m_pendingCommands; }

    Task<> refreshPlayback(Errors errors);
    // Returns whether the TV accepted the command.
    Task<bool> sendPlaybackCommand(PlaybackCommand command, ShowStatus showStatus);

    // Forgets what is known, because another TV was selected.
    void reset();

    // Pauses or resumes the video if the TV shows it, else plays it. Does nothing until the outcome
    // of the toggle before is read, which a second click would undo.
    void togglePlayback(const QString& videoName);
    // Sends a command of the user's; the outcome shows in the status line and in what is read next.
    void send(const quiv::PlaybackCommand& command);

Q_SIGNALS:
    void playbackRead(); // also when the TV said the same as before
    void pendingChanged();

private:
    // Is among the pending commands while it exists.
    class Pending;

    Task<> post(Tv tv, PlaybackCommand command);
    Task<> sendShown(PlaybackCommand command);
    Task<> toggle(PlaybackCommand command);

    const TvAccess m_tvs;
    Pairing& m_pairing;
    std::optional<PlaybackResponse> m_playback;
    QList<PlaybackCommand> m_pendingCommands;
    std::uint64_t m_readingsBegun = 0;
    std::uint64_t m_oldestValidReading = 0;
    // What m_oldestValidReading becomes once a reading shows what the last toggle did.
    std::uint64_t m_toggleShownBy = 0;
    TaskSet m_tasks;
};

// What toggling a video means while the TV plays this.
PlaybackCommand toggleCommand(const std::optional<PlaybackResponse>& playback,
                              const QString& videoName);

} // namespace quiv
