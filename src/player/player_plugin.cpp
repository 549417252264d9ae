#include "platform/player/player_plugin.h"

#include "player/mpv_player.h"
#include "player/player_description.h"

#include <QCoreApplication>
#include <QQuickWindow>

extern "C" {
#include <libavutil/log.h>
}

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

constexpr std::chrono::seconds LongestEnd{2};

// The graphics API is OpenGL by default, even while windows are drawn by Qt Quick's own renderer.
Drawing drawing() {
    const bool isOpenGl = QQuickWindow::graphicsApi() == QSGRendererInterface::OpenGL &&
                          QQuickWindow::sceneGraphBackend() != "software"_L1;
    return isOpenGl ? Drawing::OpenGl : Drawing::Software;
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
    MpvPlayerPlugin() {
        av_log_set_level(AV_LOG_QUIET); // what FFmpeg says of a file is for nobody
        qAddPostRoutine(awaitEnd);
    }

    OpenedPlayer open(const StreamAddress& address) override {
        const auto player = std::make_shared<MpvPlayer>(address, drawing());
        return {player, player};
    }

    QString description() override { return playerDescription(); }
};

} // namespace quiv

#include "player_plugin.moc"
