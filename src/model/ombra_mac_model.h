#pragma once

#include "library/library.h"
#include "library/thumbnail_url.h"
#include "model/refresh_cycle.h"
#include "model/window_state.h"
#include "net/auth_tokens.h"
#include "net/discovery.h"
#include "net/pairing.h"
#include "net/reachability.h"
#include "net/request_layer.h"
#include "net/selected_device.h"
#include "net/status_line.h"
#include "playback/local_playback.h"
#include "playback/remote_playback.h"
#include "transfer/deletion.h"
#include "transfer/downloads.h"
#include "transfer/pending_files.h"
#include "transfer/storage_move.h"
#include "transfer/uploads.h"

#include <QObject>
#include <QTimer>

namespace quiv {

// The adapters the model works with; they outlive it.
struct PlatformPorts {
    HttpSession& http;
    ServiceBrowser& browser;
    SettingsStore& settings;
    Clock& clock;
    StillExtractor& stills;
    SystemLog& log;
    FileDialogs& fileDialogs;
    LocalPlayback::Ports localPlayback;
};

// The one object the window knows. It holds the parts, wires them and selects the TV; each part
// owns its own state and operations. Main thread only; destroying it cancels whatever is under way.
class OmbraMacModel : public QObject, private Discovery::Selector {
    Q_OBJECT

public:
    explicit OmbraMacModel(const PlatformPorts& ports, QObject* parent = nullptr);
    ~OmbraMacModel() override;

    StatusLine* status() { return &m_status; }
    SelectedDevice* selected() { return &m_selected; }
    Discovery* discovery() { return &m_discovery; }
    Pairing* pairing() { return &m_pairing; }
    Library* library() { return &m_library; }
    RemotePlayback* playback() { return &m_playback; }
    LocalPlayback* localPlayback() { return &m_localPlayback; }
    StorageMove* storageMove() { return &m_storageMove; }
    Deletion* deletion() { return &m_deletion; }
    Uploads* uploads() { return &m_uploads; }
    Downloads* downloads() { return &m_downloads; }

    // What the window shows of all parts.
    WindowState state();
    // Of the selected TV, with the token it has given by now. Returns nullopt without a TV.
    std::optional<ThumbnailAddress> thumbnailAddress();

    // Makes this TV the selected one; another than before starts from nothing.
    void selectDevice(const TVEndpoint& device) override;

    // The window appeared: search for TVs and keep the selected one current.
    void appear();
    // The window is going: stop keeping it current.
    void disappear();
    // The computer woke up, or is in another network: whatever waits for an answer waits in vain.
    void networkChanged();
    // Selects the discovered TV with this endpointKey.
    void selectDevice(const QString& endpointKey);

Q_SIGNALS:
    void stateChanged(); // any of state()

private:
    void tellStateChanges();
    void takeDevice(const TVEndpoint& device);
    const std::optional<TVEndpoint>& selectedDevice() const override { return m_selected.device(); }
    void updateSelectedDevice(const TVEndpoint& device) override;
    void restartRefreshCycle();

    HttpSession& m_http;
    SettingsStore& m_settings;
    AuthTokens m_tokens;
    RequestLayer m_requests;
    StatusLine m_status;
    SelectedDevice m_selected;
    TvAccess m_tvs;
    Pairing m_pairing;
    Library m_library;
    RemotePlayback m_playback;
    LocalPlayback m_localPlayback;
    PendingFiles m_pendingFiles;
    StorageMove m_storageMove;
    Deletion m_deletion;
    Uploads m_uploads;
    Downloads m_downloads;
    Reachability m_reachability;
    Discovery m_discovery;
    RefreshCycle m_refreshCycle;
    // Restarts come from the event loop: once for several changes, and after what caused them has
    // said its own.
    QTimer m_restart;
    std::uint64_t m_playbackReading = 0;
    bool m_isVisible = false;
};

} // namespace quiv
