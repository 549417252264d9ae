#pragma once

#include "platform/desktop/media_controls.h"

#include <QObject>
#include <QString>

namespace quiv {

class MprisRoot;
class MprisPlayer;

// The media controls of desktops that know MPRIS 2.2. The name on the bus is held while something
// plays only, so that an idle window takes no keys from others.
class DBusMediaControls final : public MediaControls {
public:
    explicit DBusMediaControls(const QString& applicationId);
    ~DBusMediaControls() override;

    void setPlayer(Player* player) override;
    void show(const std::optional<MediaSession>& session) override;
    void positionJumped() override;

private:
    void offer();
    void withdraw();

    QObject m_object; // what the interfaces are of
    MprisRoot* m_root;
    MprisPlayer* m_player;
    QString m_service; // empty while it is not offered
};

} // namespace quiv
