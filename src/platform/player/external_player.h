#pragma once

#include "platform/async/task.h"

#include <QStringList>
#include <QUrl>

#include <optional>

namespace quiv {

// How a program is started: its path and arguments, one of which may be "%u", the address's place.
struct PlayerProgram {
    QStringList command;

    bool operator==(const PlayerProgram&) const = default;
};

// The media player beside this program that plays what this one cannot: VLC. Main thread only;
// destroying a task cancels it.
class ExternalPlayer {
public:
    virtual ~ExternalPlayer() = default;

    virtual Task<std::optional<PlayerProgram>> find() = 0;
    // Completes when the program runs; throws Error.
    virtual Task<> open(PlayerProgram program, QUrl address) = 0;
};

} // namespace quiv
