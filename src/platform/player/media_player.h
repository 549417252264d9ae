#pragma once

#include "platform/async/task.h"

#include <QList>
#include <QString>
#include <QUrl>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace quiv {

class PlayerScreen;

// How far a player is with what it opened.
enum class ItemStatus { Unknown, ReadyToPlay, Failed };

struct ItemReport {
    ItemStatus status = ItemStatus::Unknown;
    QString error; // of Failed: why; may be empty
};

enum class MediaKind { Subtitles, Audio };

// A subtitle or audio track.
struct MediaOption {
    std::int64_t id = 0; // the player's own
    QString displayName;

    bool operator==(const MediaOption&) const = default;
};

struct MediaGroup {
    QList<MediaOption> options; // in the order of the file
    std::optional<std::int64_t> selected;

    bool operator==(const MediaGroup&) const = default;
};

// Somebody who is told of changes; destroying it ends that.
class Observation {
public:
    virtual ~Observation() = default;
};

// Plays one address. Main thread only; no call blocks. Destroying it stops picture and sound at
// once and leaves nothing running.
class MediaPlayer {
public:
    virtual ~MediaPlayer() = default;

    // `observer` is called with the status now, before this returns, and with every change, from
    // the event loop. It may destroy the observation, but not the player.
    [[nodiscard]] virtual std::unique_ptr<Observation>
    observeStatus(std::function<void(const ItemReport&)> observer) = 0;

    virtual void play() = 0;
    virtual void pause() = 0;
    // Seconds; where a seek under way goes to, and not finite while unknown.
    virtual double currentTime() const = 0;
    // To exactly this time; from ReadyToPlay on.
    virtual void seek(double seconds) = 0;

    // Returns nullopt if the item has none of that kind, or is not ready.
    virtual std::optional<MediaGroup> group(MediaKind kind) const = 0;
    // Selects an option of the group, or none.
    virtual void select(MediaKind kind, std::optional<std::int64_t> option) = 0;
};

// A player, and the same player as the panel sees it.
struct OpenedPlayer {
    std::shared_ptr<MediaPlayer> player;
    std::shared_ptr<PlayerScreen> screen;
};

// Makes players. The first takes a while, because the decoders are loaded for it.
class MediaPlayers {
public:
    virtual ~MediaPlayers() = default;

    // Paused. Never fails: a player that cannot be had is one whose status is Failed. Destroying
    // the task cancels.
    virtual Task<OpenedPlayer> open(QUrl address) = 0;
};

} // namespace quiv
