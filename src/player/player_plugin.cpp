#include "platform/player/player_plugin.h"

#include "player/mpv_player.h"

#include <QCoreApplication>
#include <QQuickWindow>

namespace quiv {

namespace {

constexpr std::chrono::seconds LongestEnd{2};

Drawing drawing() {
    return QQuickWindow::graphicsApi() == QSGRendererInterface::OpenGL ? Drawing::OpenGl
                                                                       : Drawing::Software;
}

void awaitEnd() {
    awaitEndedPlayers(LongestEnd);
}

} // namespace

class MpvPlayerPlugin final : public QObject, public PlayerPlugin {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QUIV_PLAYER_PLUGIN)
    Q_INTERFACES(quiv::PlayerPlugin)

public:
    MpvPlayerPlugin() { qAddPostRoutine(awaitEnd); }

    OpenedPlayer open(const StreamAddress& address) override {
        const auto player = std::make_shared<MpvPlayer>(address, drawing());
        return {player, player};
    }
};

} // namespace quiv

#include "player_plugin.moc"
