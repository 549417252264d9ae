#include "model/ombra_mac_model.h"

#include <algorithm>

namespace quiv {

using namespace Qt::StringLiterals;

OmbraMacModel::OmbraMacModel(const PlatformPorts& ports, QObject* parent)
    : QObject(parent),
      m_settings(ports.settings),
      m_tokens(ports.settings, ports.clock),
      m_requests(ports.http, m_tokens),
      m_status(ports.clock),
      m_tvs(m_requests, m_selected, m_status),
      m_pairing(m_tvs, m_requests, m_tokens, ports.clock),
      m_library(m_tvs),
      m_playback(m_tvs, m_pairing),
      m_storageMove(m_tvs, m_library),
      m_deletion(m_tvs, m_pairing, m_library),
      m_uploads(m_tvs, m_pairing, m_library, ports.stills, ports.log, ports.clock),
      m_downloads(m_tvs, m_pairing, ports.fileDialogs),
      m_discovery(m_tvs, ports.browser, ports.settings, ports.clock, *this),
      m_refreshCycle(m_selected, {m_library, m_playback, m_storageMove, m_pairing}, ports.clock) {
    m_restart.setSingleShot(true);
    connect(&m_restart, &QTimer::timeout, this, [this] { m_refreshCycle.restart(); });
}

OmbraMacModel::~OmbraMacModel() = default;

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

void OmbraMacModel::selectDevice(const QString& key) {
    const auto& devices = m_discovery.discoveredDevices();
    const auto found = std::ranges::find(devices, key, &quiv::endpointKey);
    if (found != devices.end())
        selectDevice(TVEndpoint(*found));
}

void OmbraMacModel::selectDevice(const TVEndpoint& device) {
    const bool isSame = m_selected.key() == quiv::endpointKey(device);
    m_settings.setText(QString::fromUtf16(SelectedDeviceKey), quiv::endpointKey(device));
    m_selected.set(device);
    if (isSame) {
        m_status.post(u"Connected to "_s + device.name);
        return;
    }
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
