#include "net/discovery.h"

#include <algorithm>

namespace quiv {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto ResolveTimeout = 8s;
constexpr auto ProbeTimeout = 1500ms;
constexpr auto WaitForRememberedTv = 1500ms;

QString withoutDotsAtEnds(const QString& name) {
    qsizetype begin = 0;
    qsizetype end = name.size();
    while (begin < end && name[begin] == u'.')
        ++begin;
    while (end > begin && name[end - 1] == u'.')
        --end;
    return name.sliced(begin, end - begin);
}

} // namespace

std::optional<TVEndpoint> endpointOf(const ResolvedService& service) {
    const auto ipv4 =
        std::ranges::find(service.addresses, HostAddress::Family::IPv4, &HostAddress::family);
    QString host;
    if (ipv4 != service.addresses.end())
        host = ipv4->toText();
    else if (service.hostName)
        host = withoutDotsAtEnds(*service.hostName);
    else
        return std::nullopt;
    if (service.port < 1)
        return std::nullopt;
    TVEndpoint endpoint;
    endpoint.name = service.name;
    endpoint.host = host;
    endpoint.port = service.port;
    return endpoint;
}

Discovery::Discovery(const TvAccess& tvs, ServiceBrowser& browser, const SettingsStore& settings,
                     Clock& clock, Selector& selector, QObject* parent)
    : QObject(parent),
      m_tvs(tvs),
      m_browser(browser),
      m_settings(settings),
      m_clock(clock),
      m_selector(selector) {}

Discovery::~Discovery() {
    m_browser.stop();
}

void Discovery::refreshDiscovery() {
    m_discoveredDevices.clear();
    Q_EMIT devicesChanged();
    m_browser.stop();
    m_tvs.say(u"Searching for TVs on local network..."_s);
    m_wait = m_clock.after(WaitForRememberedTv, [this] {
        m_wait.reset();
        ensureSelectedDevice();
    });
    m_browser.search(u"_ombra._tcp."_s, u"local."_s,
                     [this](const FoundService& service) { m_tasks.add(follow(service)); });
}

// From an announcement to an entry of the list. What does not resolve is dropped.
Task<> Discovery::follow(FoundService service) {
    const auto resolved = co_await m_browser.resolve(service, ResolveTimeout);
    const auto endpoint = resolved ? endpointOf(*resolved) : std::nullopt;
    if (!endpoint)
        co_return;
    const auto info = co_await probeDeviceInfo(*endpoint);
    upsertDiscoveredDevice(info ? enriched(*endpoint, *info) : knownRecord(*endpoint));
    m_tvs.say(u"Found %1 TV device(s)"_s.arg(m_discoveredDevices.size()));
}

Task<std::optional<RemoteDeviceInfo>> Discovery::probeDeviceInfo(TVEndpoint endpoint) {
    const auto base = baseURL(endpoint);
    if (!base)
        co_return std::nullopt;
    try {
        const Tv tv = m_tvs.at(*base);
        co_return co_await tv.get<RemoteDeviceInfo>(u"api/info"_s, ProbeTimeout);
    } catch (const Error&) {
        co_return std::nullopt;
    }
}

// A TV that does not answer the probe is listed as it is known, else as it announced itself.
TVEndpoint Discovery::knownRecord(const TVEndpoint& endpoint) const {
    const QString key = endpointKey(endpoint);
    if (const TVEndpoint* known = deviceWithKey(key))
        return *known;
    const auto& selected = m_selector.selectedDevice();
    return selected && endpointKey(*selected) == key ? *selected : endpoint;
}

void Discovery::upsertDiscoveredDevice(const TVEndpoint& device) {
    const QString key = endpointKey(device);
    const auto known = std::ranges::find(m_discoveredDevices, key,
                                         [](const auto& each) { return endpointKey(each); });
    if (known == m_discoveredDevices.end())
        m_discoveredDevices.append(device);
    else
        *known = device;
    const auto& selected = m_selector.selectedDevice();
    if (selected && endpointKey(*selected) == key)
        m_selector.updateSelectedDevice(device);
    std::ranges::stable_sort(m_discoveredDevices, comesBefore);
    Q_EMIT devicesChanged();
    ensureSelectedDevice();
}

void Discovery::ensureSelectedDevice() {
    const auto& selected = m_selector.selectedDevice();
    if (selected && deviceWithKey(endpointKey(*selected)))
        return;
    const QString persistedKey =
        m_settings.text(QString::fromUtf16(SelectedDeviceKey)).value_or(QString()).trimmed();
    const TVEndpoint* device = persistedKey.isEmpty() ? nullptr : deviceWithKey(persistedKey);
    if (!device && !persistedKey.isEmpty() && m_wait)
        return; // it may still come
    if (!device && !m_discoveredDevices.isEmpty())
        device = &m_discoveredDevices.first();
    if (device)
        m_selector.selectDevice(TVEndpoint(*device));
}

const TVEndpoint* Discovery::deviceWithKey(const QString& key) const {
    const auto found = std::ranges::find(m_discoveredDevices, key,
                                         [](const auto& each) { return endpointKey(each); });
    return found == m_discoveredDevices.end() ? nullptr : &*found;
}

} // namespace quiv
