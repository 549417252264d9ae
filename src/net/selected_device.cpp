#include "net/selected_device.h"

#include "net/tv_request.h"

namespace quiv {

std::optional<QUrl> SelectedDevice::baseURL() const {
    return m_device ? quiv::baseURL(*m_device) : std::nullopt;
}

void SelectedDevice::set(const TVEndpoint& device) {
    if (m_device == device)
        return;
    const bool isAnother = key() != endpointKey(device);
    m_device = device;
    if (isAnother)
        ++m_generation;
    Q_EMIT changed();
    if (isAnother)
        Q_EMIT anotherSelected();
}

} // namespace quiv
