#include "simulator/announcing/embedded_announcer.h"

#include "simulator/console.h"

#include <avahi-common/error.h>
#include <avahi-core/log.h>

namespace quiv::simulator {

namespace {

// The stack also reports everyday events, and any other stack on the machine as a trouble.
void logErrors(AvahiLogLevel level, const char* text) {
    if (level <= AVAHI_LOG_ERROR)
        printError(QString::fromUtf8(text));
}

} // namespace

std::unique_ptr<Announcer> EmbeddedAnnouncer::create(const Settings& settings, QString* problem) {
    avahi_set_log_function(logErrors);
    std::unique_ptr<EmbeddedAnnouncer> announcer(new EmbeddedAnnouncer(settings));
    const int error = announcer->start();
    if (error >= 0)
        return announcer;
    *problem = QString::fromUtf8(avahi_strerror(error));
    return nullptr;
}

EmbeddedAnnouncer::EmbeddedAnnouncer(const Settings& settings)
    : Announcer(settings), m_poll(avahi_threaded_poll_new()) {}

EmbeddedAnnouncer::~EmbeddedAnnouncer() {
    avahi_threaded_poll_stop(m_poll);
    if (m_server)
        avahi_server_free(m_server);
    avahi_threaded_poll_free(m_poll);
}

int EmbeddedAnnouncer::start() {
    AvahiServerConfig config;
    avahi_server_config_init(&config);
    config.publish_addresses = 0;
    config.publish_hinfo = 0;
    config.publish_workstation = 0;
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
    case AVAHI_SERVER_FAILURE:
        return broke(avahi_server_errno(m_server));
    case AVAHI_SERVER_REGISTERING:
    case AVAHI_SERVER_COLLISION: // of a host name, and it publishes none
    case AVAHI_SERVER_INVALID:
        break;
    }
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

int EmbeddedAnnouncer::addAddress(const char* host, const InterfaceAddress& address) {
    AvahiAddress parsed;
    if (!avahi_address_parse(address.text.toLatin1().constData(), AVAHI_PROTO_UNSPEC, &parsed))
        return AVAHI_ERR_INVALID_ADDRESS;
    return avahi_server_add_address(m_server, m_group, address.interfaceIndex, AVAHI_PROTO_UNSPEC,
                                    AVAHI_PUBLISH_NO_REVERSE, host, &parsed);
}

int EmbeddedAnnouncer::commit() {
    return avahi_s_entry_group_commit(m_group);
}

} // namespace quiv::simulator
