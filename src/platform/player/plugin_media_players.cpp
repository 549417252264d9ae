#include "platform/player/plugin_media_players.h"

#include "platform/async/background.h"
#include "platform/installation.h"
#include "platform/player/no_player.h"
#include "platform/player/player_plugin.h"

#include <QPluginLoader>

namespace quiv {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto LookUpTimeout = 5s;

StreamAddress streamAddress(const QUrl& url, const std::optional<HostAddress>& host) {
    StreamAddress address{url.toEncoded(), {}, 0};
    if (!host)
        return address;
    const QByteArray text = host->toText().toLatin1();
    const bool isIpv6 = host->family == HostAddress::Family::IPv6;
    address.connectTo = isIpv6 ? "::[" + text + "]:" : "::" + text + ":";
    address.addressScope = static_cast<long>(host->scope);
    return address;
}

} // namespace

PluginMediaPlayers::PluginMediaPlayers(HostResolver& resolver)
    : m_resolver(resolver), m_path(playerLibraryPath()) {}

Task<OpenedPlayer> PluginMediaPlayers::open(QUrl address) {
    const std::optional<HostAddress> host =
        co_await m_resolver.resolve(address.host(), LookUpTimeout);
    PlayerPlugin* const loaded = co_await plugin();
    if (loaded)
        co_return loaded->open(streamAddress(address, host));
    const auto none = std::make_shared<NoPlayer>();
    co_return OpenedPlayer{none, none};
}

// Loaded on another thread, used on this one.
Task<PlayerPlugin*> PluginMediaPlayers::plugin() {
    if (m_plugin)
        co_return m_plugin;
    const auto load = [path = m_path] {
        return QPluginLoader(path).load();
    };
    const bool isLoaded = co_await onDisk(load);
    if (isLoaded)
        m_plugin = qobject_cast<PlayerPlugin*>(QPluginLoader(m_path).instance());
    co_return m_plugin;
}

} // namespace quiv
