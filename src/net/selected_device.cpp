#include "net/selected_device.h"

#include "net/tv_request.h"

namespace quiv {

std::optional<QUrl> SelectedDevice::baseURL() const {
    return m_device ? quiv::baseURL(*m_device) : std::nullopt;
}

void SelectedDevice::set(const TVEndpoint& device) {
    if (m_device == device)
        return;
    if (key() != endpointKey(device))
        ++m_generation;
    m_device = device;
    Q_EMIT changed();
}

} // namespace quiv
