#include "app/network_watch.h"

namespace quiv {

NetworkWatch::NetworkWatch(SystemChanges& system, AvahiConnection& avahi, Discovery& discovery)
    : m_system(system), m_avahi(avahi), m_discovery(discovery) {
    connect(&m_system, &SystemChanges::interfacesChanged, this, &NetworkWatch::tell);
    m_avahi.setBackendListener([this] { tell(); });
    tell();
}

NetworkWatch::~NetworkWatch() {
    m_avahi.setBackendListener({});
}

void NetworkWatch::tell() {
    const bool canSearch = m_avahi.backendKind() != AvahiBackendKind::None;
    m_discovery.setNetworkProblem(networkProblem(m_system.interfaces(), canSearch));
}

} // namespace quiv
