#pragma once

#include "platform/host_resolver.h"
#include "platform/player/media_player.h"

#include <QString>

namespace quiv {

class PlayerPlugin;

// Players of a library that is loaded, away from the main thread, when the first one is asked for:
// who only controls a TV has neither its memory nor the time that loading takes.
class PluginMediaPlayers final : public MediaPlayers {
public:
    // The resolver must outlive this.
    explicit PluginMediaPlayers(HostResolver& resolver);

    Task<OpenedPlayer> open(QUrl address) override;

private:
    Task<PlayerPlugin*> plugin();

    HostResolver& m_resolver;
    const QString m_path;
    PlayerPlugin* m_plugin = nullptr; // lives until the program ends
};

} // namespace quiv
