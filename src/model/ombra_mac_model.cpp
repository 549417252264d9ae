#include "model/ombra_mac_model.h"

#include <QSignalBlocker>

#include <algorithm>

namespace quiv {

using namespace Qt::StringLiterals;

namespace {

QString downloadErrorText(int status) {
    return downloadErrorMessage(status, std::nullopt);
}

} // namespace

OmbraMacModel::OmbraMacModel(const PlatformPorts& ports, QObject* parent)
    : QObject(parent),
      m_http(ports.http),
      m_settings(ports.settings),
      m_tokens(ports.settings, ports.clock),
      m_requests(ports.http, m_tokens),
      m_status(ports.clock),
      m_tvs(m_requests, m_selected, m_status),
      m_pairing(m_tvs, m_requests, m_tokens, ports.clock),
      m_library(m_tvs),
      m_playback(m_tvs, m_pairing),
      m_localPlayback(m_tvs, m_pairing, m_tokens, m_playback, ports.localPlayback,
                      downloadErrorText),
      m_storageMove(m_tvs, m_library, m_pendingFiles),
      m_deletion(m_tvs, m_pairing, m_library, m_pendingFiles),
      m_uploads(m_tvs, m_pairing, m_library, ports.stills, ports.log, ports.clock),
      m_downloads(m_tvs, m_pairing, ports.fileDialogs, m_pendingFiles),
      m_reachability(m_selected),
      m_discovery(m_tvs, ports.browser, ports.settings, ports.clock, ports.log, *this),
      m_refreshCycle(m_selected, {m_library, m_playback, m_storageMove, m_pairing, m_reachability},
                     ports.clock) {
    m_requests.setContactListener(&m_reachability);
    // Queued, as the request that failed may be a task of the discovery's.
    connect(
        &m_reachability, &Reachability::resolutionWanted, &m_discovery,
        [this] { m_discovery.resolveAnew(m_selected.key()); }, Qt::QueuedConnection);
    connect(&m_reachability, &Reachability::reachableChanged, &m_status, [this] {
        if (m_reachability.isReachable())
            m_status.retractSilence(u"Connected to "_s + m_selected.name());
    });
    m_restart.setSingleShot(true);
    connect(&m_restart, &QTimer::timeout, this, [this] { m_refreshCycle.restart(); });
    tellStateChanges();
}

OmbraMacModel::~OmbraMacModel() = default;

void OmbraMacModel::tellStateChanges() {
    const auto tell = [this](auto* part, auto changed) {
        connect(part, changed, this, &OmbraMacModel::stateChanged);
    };
    tell(&m_discovery, &Discovery::devicesChanged);
    tell(&m_discovery, &Discovery::searchingChanged);
    tell(&m_discovery, &Discovery::networkProblemChanged);
    tell(&m_tokens, &AuthTokens::tokenChanged);
    tell(&m_selected, &SelectedDevice::changed);
    tell(&m_reachability, &Reachability::reachableChanged);
    tell(&m_status, &StatusLine::statusMessageChanged);
    tell(&m_pairing, &Pairing::stateChanged);
    tell(&m_library, &Library::contentChanged);
    tell(&m_library, &Library::loadInProgressChanged);
    tell(&m_library, &Library::failureChanged);
    connect(&m_playback, &RemotePlayback::playbackRead, this, [this] { ++m_playbackReading; });
    tell(&m_playback, &RemotePlayback::playbackRead);
    tell(&m_playback, &RemotePlayback::pendingChanged);
    tell(&m_localPlayback, &LocalPlayback::stateChanged);
    tell(&m_pendingFiles, &PendingFiles::changed);
    tell(&m_storageMove, &StorageMove::stateChanged);
    tell(&m_uploads, &Uploads::itemsChanged);
    tell(&m_uploads, &Uploads::progressChanged);
    tell(&m_downloads, &Downloads::stateChanged);
}

WindowState OmbraMacModel::state() {
    return {.discoveredDevices = m_discovery.discoveredDevices(),
            .isSearching = m_discovery.isSearching(),
            .networkProblem = m_discovery.networkProblem(),
            .selectedDevice = m_selected.device(),
            .isReachable = m_reachability.isReachable(),
            .status = m_status.message(),
            .pairing = m_pairing.state(),
            .content = m_library.content(),
            .isLibraryLoading = m_library.isLibraryLoadInProgress(),
            .libraryFailure = m_library.failure(),
            .playback = m_playback.playback(),
            .pendingCommands = m_playback.pendingCommands(),
            .playbackReading = m_playbackReading,
            .localPlayback = m_localPlayback.state(),
            .move = m_storageMove.state(),
            .pendingFiles = m_pendingFiles.requests(),
            .uploads = m_uploads.uploadListItems(),
            .download = m_downloads.state(),
            .thumbnails = thumbnailAddress()};
}

std::optional<ThumbnailAddress> OmbraMacModel::thumbnailAddress() {
    const auto base = m_selected.baseURL();
    return base ? std::optional(ThumbnailAddress{*base, m_tokens.authQueryItems(*base)})
                : std::nullopt;
}

void OmbraMacModel::appear() {
    m_isVisible = true;
    m_discovery.refreshDiscovery();
    restartRefreshCycle();
}

void OmbraMacModel::disappear() {
    m_isVisible = false;
    m_restart.stop();
    m_refreshCycle.stop();
}

void OmbraMacModel::networkChanged() {
    m_http.dropIdleConnections();
    m_refreshCycle.renew();
}

void OmbraMacModel::selectDevice(const QString& key) {
    const auto& devices = m_discovery.discoveredDevices();
    const auto found = std::ranges::find(devices, key, &quiv::endpointKey);
    if (found != devices.end())
        selectDevice(TVEndpoint(*found));
}

// One change for the window, which would otherwise see the new TV with the library of the old one.
void OmbraMacModel::selectDevice(const TVEndpoint& device) {
    {
        const QSignalBlocker together(this);
        takeDevice(device);
    }
    Q_EMIT stateChanged();
}

void OmbraMacModel::takeDevice(const TVEndpoint& device) {
    const QString key = quiv::endpointKey(device);
    const bool isSame = m_selected.key() == key;
    m_settings.setText(QString::fromUtf16(SelectedDeviceKey), key);
    m_settings.setText(QString::fromUtf16(SelectedServiceKey), m_discovery.serviceNameOf(key));
    m_selected.set(device);
    if (isSame) {
        m_status.post(u"Connected to "_s + device.name);
        return;
    }
    m_localPlayback.closeLocalPlayback();
    m_reachability.reset();
    m_playback.reset();
    m_storageMove.reset();
    m_pairing.reset();
    m_library.reset();
    m_status.post(u"Loading library from %1..."_s.arg(device.name));
    restartRefreshCycle();
}

void OmbraMacModel::updateSelectedDevice(const TVEndpoint& device) {
    m_selected.set(device);
    m_refreshCycle.hasten();
}

void OmbraMacModel::restartRefreshCycle() {
    if (!m_isVisible)
        return;
    m_refreshCycle.stop();
    m_restart.start(0);
}

} // namespace quiv
