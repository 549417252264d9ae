#pragma once

#include "app/network_watch.h"
#include "model/ombra_mac_model.h"
#include "platform/appearance/portal_appearance.h"
#include "platform/avahi/avahi_connection.h"
#include "platform/avahi/avahi_dns_sd.h"
#include "platform/clock.h"
#include "platform/desktop/dbus_file_manager.h"
#include "platform/desktop/dbus_launcher_entry.h"
#include "platform/desktop/dbus_media_controls.h"
#include "platform/desktop/dbus_notifier.h"
#include "platform/desktop/dbus_sleep_inhibitor.h"
#include "platform/dialogs/file_dialogs.h"
#include "platform/dialogs/portal_file_dialogs.h"
#include "platform/http/curl_http_session.h"
#include "platform/pictures/process_picture_decoder.h"
#include "platform/player/plugin_media_players.h"
#include "platform/player/process_external_player.h"
#include "platform/settings_store.h"
#include "platform/stills/process_still_extractor.h"
#include "platform/system_changes.h"
#include "platform/system_log.h"
#include "ui/desktop/desktop_ports.h"
#include "ui/window/window_ports.h"

#include <memory>

namespace quiv {

// Names the application on the bus and its desktop entry.
inline const QString ApplicationId = QStringLiteral(QUIV_APPLICATION_ID);

// The model with the adapters it runs on: the one place that names them. Each member uses those
// before it and goes before them.
class Composition {
public:
    explicit Composition(PortalFileDialogs::ParentWindow parentWindow,
                         const QString& settingsPath = FileSettingsStore::standardPath())
        : m_settings(settingsPath, m_clock, m_log), m_portalDialogs(std::move(parentWindow)) {
        QObject::connect(&m_systemChanges, &SystemChanges::networkChanged, &m_model,
                         &OmbraMacModel::networkChanged);
    }

    OmbraMacModel& model() { return m_model; }
    // What the window works with besides.
    WindowPorts windowPorts() {
        return {m_fileDialogs, m_http,       m_pictures, m_fileManager,
                m_clock,       m_appearance, m_settings};
    }
    DesktopPorts desktopPorts() {
        return {m_launcher, m_mediaControls, m_notifier, m_awakeForTransfers};
    }

private:
    PortalAppearance m_appearance; // first, to be answered before the window is shown
    SystemClock m_clock;
    SyslogSystemLog m_log;
    FileSettingsStore m_settings;
    std::shared_ptr<AvahiConnection> m_avahi = std::make_shared<AvahiConnection>();
    AvahiDnsSd m_dnsSd{m_avahi};
    CurlHttpSession m_http{&m_dnsSd};
    ProcessStillExtractor m_stills;
    ProcessPictureDecoder m_pictures;
    PortalFileDialogs m_portalDialogs;
    PreferredFileDialogs m_fileDialogs{m_portalDialogs, m_settings};
    DBusFileManager m_fileManager;
    PluginMediaPlayers m_players{m_dnsSd};
    ProcessExternalPlayer m_externalPlayer;
    DBusLauncherEntry m_launcher{ApplicationId};
    DBusMediaControls m_mediaControls{ApplicationId};
    DBusNotifier m_notifier{ApplicationId};
    DBusSleepInhibitor m_awakeForVideo{DBusSleepInhibitor::Activity::VideoPlaying};
    DBusSleepInhibitor m_awakeForTransfers{DBusSleepInhibitor::Activity::FilesMoving};
    SystemChanges m_systemChanges;
    OmbraMacModel m_model{{m_http,
                           m_dnsSd,
                           m_settings,
                           m_clock,
                           m_stills,
                           m_log,
                           m_fileDialogs,
                           {m_players, m_externalPlayer, m_awakeForVideo}}};
    NetworkWatch m_networkWatch{m_systemChanges, *m_avahi, *m_model.discovery()};
};

} // namespace quiv
