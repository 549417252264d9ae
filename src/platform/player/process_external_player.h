#pragma once

#include "platform/player/external_player.h"

namespace quiv {

// VLC as it is installed on this computer, started as a program of its own that outlives this one.
// VLC takes addresses by its arguments alone, which other users of this computer can read.
class ProcessExternalPlayer final : public ExternalPlayer {
public:
    Task<std::optional<PlayerProgram>> find() override;
    Task<> open(PlayerProgram program, QUrl address) override;
};

} // namespace quiv
