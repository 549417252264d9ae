#include "simulator/announcing/daemon_announcer.h"

#include <avahi-common/error.h>

namespace quiv::simulator {

std::unique_ptr<Announcer> DaemonAnnouncer::create(const Settings& settings, QString* problem) {
    std::unique_ptr<DaemonAnnouncer> announcer(new DaemonAnnouncer(settings));
    const int error = announcer->start();
    if (error >= 0)
        return announcer;
    *problem = QString::fromUtf8(avahi_strerror(error));
    return nullptr;
}

DaemonAnnouncer::DaemonAnnouncer(const Settings& settings)
    : Announcer(settings), m_poll(avahi_threaded_poll_new()) {}

DaemonAnnouncer::~DaemonAnnouncer() {
    avahi_threaded_poll_stop(m_poll);
    if (m_client)
        avahi_client_free(m_client);
    avahi_threaded_poll_free(m_poll);
}

int DaemonAnnouncer::start() {
    int error = AVAHI_OK;
    m_client = avahi_client_new(
        avahi_threaded_poll_get(m_poll), AvahiClientFlags(0),
        [](AvahiClient* client, AvahiClientState state, void* self) {
            auto* announcer = static_cast<DaemonAnnouncer*>(self);
            announcer->m_client = client; // the first call comes before avahi_client_new returns
            announcer->clientChanged(state);
        },
        this, &error);
    return m_client ? avahi_threaded_poll_start(m_poll) : error;
}

void DaemonAnnouncer::clientChanged(AvahiClientState state) {
    switch (state) {
    case AVAHI_CLIENT_S_RUNNING:
        return publish();
    case AVAHI_CLIENT_S_COLLISION:
    case AVAHI_CLIENT_S_REGISTERING:
        return reset();
    case AVAHI_CLIENT_FAILURE:
        return broke(avahi_client_errno(m_client));
    case AVAHI_CLIENT_CONNECTING:
        break;
    }
}

void DaemonAnnouncer::lock() {
    avahi_threaded_poll_lock(m_poll);
}

void DaemonAnnouncer::unlock() {
    avahi_threaded_poll_unlock(m_poll);
}

bool DaemonAnnouncer::isReady() const {
    return avahi_client_get_state(m_client) == AVAHI_CLIENT_S_RUNNING;
}

void DaemonAnnouncer::reset() {
    if (m_group)
        avahi_entry_group_reset(m_group);
    else
        m_group = avahi_entry_group_new(
            m_client,
            [](AvahiEntryGroup*, AvahiEntryGroupState state, void* self) {
                static_cast<DaemonAnnouncer*>(self)->groupChanged(state);
            },
            this);
}

int DaemonAnnouncer::addService(const char* name, const char* host, quint16 port) {
    return avahi_entry_group_add_service(m_group, AVAHI_IF_UNSPEC, AVAHI_PROTO_UNSPEC,
                                         AvahiPublishFlags(0), name, serviceType, nullptr, host,
                                         port, nullptr);
}

int DaemonAnnouncer::addAddress(const char* host, const InterfaceAddress& address) {
    AvahiAddress parsed;
    if (!avahi_address_parse(address.text.toLatin1().constData(), AVAHI_PROTO_UNSPEC, &parsed))
        return AVAHI_ERR_INVALID_ADDRESS;
    return avahi_entry_group_add_address(m_group, address.interfaceIndex, AVAHI_PROTO_UNSPEC,
                                         AVAHI_PUBLISH_NO_REVERSE, host, &parsed);
}

int DaemonAnnouncer::commit() {
    return avahi_entry_group_commit(m_group);
}

} // namespace quiv::simulator
