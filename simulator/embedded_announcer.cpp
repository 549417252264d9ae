#include "simulator/embedded_announcer.h"

#include "simulator/network_addresses.h"

#include <avahi-common/alternative.h>
#include <avahi-common/error.h>
#include <avahi-common/malloc.h>

#include <unistd.h>

namespace quiv::simulator {

// Several simulators may run on one machine, each a host of its own.
static QString hostNameFor(const Announcer::Settings& settings) {
    return settings.hostName.isEmpty() ? QStringLiteral("quiv-tv-%1").arg(getpid())
                                       : settings.hostName;
}

std::unique_ptr<Announcer> EmbeddedAnnouncer::create(const Settings& settings, QString* problem) {
    const QString hostName = hostNameFor(settings);
    std::unique_ptr<EmbeddedAnnouncer> announcer(new EmbeddedAnnouncer(settings, hostName));
    const int error = announcer->start(hostName, !settings.ipv6Only);
    if (error >= 0)
        return announcer;
    *problem = QString::fromUtf8(avahi_strerror(error));
    return nullptr;
}

EmbeddedAnnouncer::EmbeddedAnnouncer(const Settings& settings, const QString& hostName)
    : Announcer(settings, settings.ipv6Only ? hostName : QString(),
                settings.ipv6Only ? ipv6Addresses() : QStringList()),
      m_poll(avahi_threaded_poll_new()) {}

EmbeddedAnnouncer::~EmbeddedAnnouncer() {
    avahi_threaded_poll_stop(m_poll);
    if (m_server)
        avahi_server_free(m_server);
    avahi_threaded_poll_free(m_poll);
}

int EmbeddedAnnouncer::start(const QString& hostName, bool publishesAddresses) {
    AvahiServerConfig config;
    avahi_server_config_init(&config);
    config.host_name = avahi_strdup(hostName.toUtf8().constData());
    config.publish_addresses = publishesAddresses;
    config.publish_hinfo = 0;
    config.publish_workstation = 0;
    // Stacks of other programs on this machine keep working.
    config.disallow_other_stacks = 0;
    int error = AVAHI_OK;
    m_server = avahi_server_new(
        avahi_threaded_poll_get(m_poll), &config,
        [](AvahiServer* server, AvahiServerState state, void* self) {
            auto* announcer = static_cast<EmbeddedAnnouncer*>(self);
            announcer->m_server = server; // the first call comes before avahi_server_new returns
            announcer->serverChanged(state);
        },
        this, &error);
    avahi_server_config_free(&config);
    return m_server ? avahi_threaded_poll_start(m_poll) : error;
}

void EmbeddedAnnouncer::serverChanged(AvahiServerState state) {
    switch (state) {
    case AVAHI_SERVER_RUNNING:
        return publish();
    case AVAHI_SERVER_REGISTERING:
        return reset();
    case AVAHI_SERVER_COLLISION:
        return takeOtherHostName();
    case AVAHI_SERVER_FAILURE:
        return broke(avahi_server_errno(m_server));
    case AVAHI_SERVER_INVALID:
        break;
    }
}

void EmbeddedAnnouncer::takeOtherHostName() {
    reset();
    char* other = avahi_alternative_host_name(avahi_server_get_host_name(m_server));
    const int error = avahi_server_set_host_name(m_server, other);
    avahi_free(other);
    if (error < 0)
        broke(error);
}

void EmbeddedAnnouncer::lock() {
    avahi_threaded_poll_lock(m_poll);
}

void EmbeddedAnnouncer::unlock() {
    avahi_threaded_poll_unlock(m_poll);
}

bool EmbeddedAnnouncer::isReady() const {
    return avahi_server_get_state(m_server) == AVAHI_SERVER_RUNNING;
}

void EmbeddedAnnouncer::reset() {
    if (m_group)
        avahi_s_entry_group_reset(m_group);
    else
        m_group = avahi_s_entry_group_new(
            m_server,
            [](AvahiServer*, AvahiSEntryGroup*, AvahiEntryGroupState state, void* self) {
                static_cast<EmbeddedAnnouncer*>(self)->groupChanged(state);
            },
            this);
}

int EmbeddedAnnouncer::addService(const char* name, const char* host, quint16 port) {
    return avahi_server_add_service(m_server, m_group, AVAHI_IF_UNSPEC, AVAHI_PROTO_UNSPEC,
                                    AvahiPublishFlags(0), name, serviceType, nullptr, host, port,
                                    nullptr);
}

int EmbeddedAnnouncer::addAddress(const char* host, const char* address) {
    AvahiAddress parsed;
    if (!avahi_address_parse(address, AVAHI_PROTO_UNSPEC, &parsed))
        return AVAHI_ERR_INVALID_ADDRESS;
    return avahi_server_add_address(m_server, m_group, AVAHI_IF_UNSPEC, AVAHI_PROTO_UNSPEC,
                                    AVAHI_PUBLISH_NO_REVERSE, host, &parsed);
}

int EmbeddedAnnouncer::commit() {
    return avahi_s_entry_group_commit(m_group);
}

} // namespace quiv::simulator
