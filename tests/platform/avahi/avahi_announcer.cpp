// Announces one service in the local network as a host of its own does, until its standard input
// ends; then it says goodbye. A program of its own, as publishing with Avahi's core library does
// not work in a process that also uses its client library (see AvahiEmbeddedBackend).
//
// avahi_announcer NAME(in hexadecimal) HOST IPV4 IPV6 PORT; an address may be empty

#include <QByteArray>
#include <avahi-common/simple-watch.h>
#include <avahi-core/core.h>
#include <avahi-core/log.h>
#include <avahi-core/publish.h>
#include <cstdio>
#include <memory>
#include <unistd.h>

namespace {

struct Service {
    QByteArray name;
    QByteArray hostName;
    QByteArray ipv4;
    QByteArray ipv6;
    quint16 port;
};

void keepQuiet(AvahiLogLevel, const char*) {}

void onServerState(AvahiServer*, AvahiServerState, void*) {}

void onGroupState(AvahiServer*, AvahiSEntryGroup*, AvahiEntryGroupState state, void* poll) {
    if (state == AVAHI_ENTRY_GROUP_ESTABLISHED) {
        std::puts("announced");
        std::fflush(stdout);
    } else if (state == AVAHI_ENTRY_GROUP_COLLISION || state == AVAHI_ENTRY_GROUP_FAILURE) {
        avahi_simple_poll_quit(static_cast<AvahiSimplePoll*>(poll));
    }
}

void onInput(AvahiWatch*, int, AvahiWatchEvent, void* poll) {
    avahi_simple_poll_quit(static_cast<AvahiSimplePoll*>(poll));
}

AvahiServer* createServer(const AvahiPoll* poll) {
    AvahiServerConfig config;
    avahi_server_config_init(&config);
    config.publish_addresses = 0;
    config.publish_hinfo = 0;
    config.publish_workstation = 0;
    config.enable_wide_area = 0;
    int error = 0;
    AvahiServer* server = avahi_server_new(poll, &config, onServerState, nullptr, &error);
    avahi_server_config_free(&config);
    return server;
}

bool addAddress(AvahiServer* server, AvahiSEntryGroup* group, const Service& service,
                const QByteArray& address) {
    AvahiAddress parsed;
    return address.isEmpty() ||
           (avahi_address_parse(address.constData(), AVAHI_PROTO_UNSPEC, &parsed) &&
            avahi_server_add_address(server, group, AVAHI_IF_UNSPEC, AVAHI_PROTO_UNSPEC,
                                     AVAHI_PUBLISH_NO_REVERSE, service.hostName.constData(),
                                     &parsed) == 0);
}

bool announce(AvahiServer* server, AvahiSEntryGroup* group, const Service& service) {
    return addAddress(server, group, service, service.ipv4) &&
           addAddress(server, group, service, service.ipv6) &&
           avahi_server_add_service(server, group, AVAHI_IF_UNSPEC, AVAHI_PROTO_UNSPEC,
                                    AvahiPublishFlags{}, service.name.constData(), "_ombra._tcp",
                                    nullptr, service.hostName.constData(), service.port,
                                    nullptr) == 0 &&
           avahi_s_entry_group_commit(group) == 0;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 6)
        return 2;
    const Service service{QByteArray::fromHex(argv[1]), argv[2], argv[3], argv[4],
                          QByteArray(argv[5]).toUShort()};
    avahi_set_log_function(keepQuiet);
    const std::unique_ptr<AvahiSimplePoll, decltype(&avahi_simple_poll_free)> poll(
        avahi_simple_poll_new(), avahi_simple_poll_free);
    const AvahiPoll* api = avahi_simple_poll_get(poll.get());
    const std::unique_ptr<AvahiServer, decltype(&avahi_server_free)> server(createServer(api),
                                                                            avahi_server_free);
    if (!server)
        return 1;
    if (!announce(server.get(), avahi_s_entry_group_new(server.get(), onGroupState, poll.get()),
                  service))
        return 1;
    api->watch_new(api, STDIN_FILENO, AVAHI_WATCH_IN, onInput, poll.get());
    avahi_simple_poll_loop(poll.get());
    return 0;
}
