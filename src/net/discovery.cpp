#include "net/discovery.h"

#include "net/status_line.h"

#include <algorithm>

namespace quiv {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto ResolveTimeout = 8s;
constexpr auto ProbeTimeout = 1500ms;

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

Discovery::Discovery(ServiceBrowser& browser, RequestLayer& requests, const SettingsStore& settings,
                     Selector& selector, StatusLine& status, QObject* parent)
    : QObject(parent),
      m_browser(browser),
      m_requests(requests),
      m_settings(settings),
      m_selector(selector),
      m_status(status) {}

Discovery::~Discovery() {
    m_browser.stop();
}

void Discovery::refreshDiscovery() {
    m_discoveredDevices.clear();
    Q_EMIT devicesChanged();
    m_browser.stop();
    m_status.post(u"Searching for TVs on local network..."_s);
    m_browser.search(u"_ombra._tcp."_s, u"local."_s,
                     [this](const FoundService& service) { m_tasks.add(follow(service)); });
}

// From an announcement to an entry of the list. What does not resolve is dropped.
Task<> Discovery::follow(FoundService service) {
    auto resolving = m_browser.resolve(service, ResolveTimeout);
    const auto resolved = co_await std::move(resolving);
    const auto endpoint = resolved ? endpointOf(*resolved) : std::nullopt;
    if (!endpoint)
        co_return;
    auto probing = probeDeviceInfo(*endpoint);
    const TVEndpoint device = co_await std::move(probing);
    upsertDiscoveredDevice(device);
    m_status.post(u"Found %1 TV device(s)"_s.arg(m_discoveredDevices.size()));
}

Task<TVEndpoint> Discovery::probeDeviceInfo(TVEndpoint endpoint) {
    const auto base = baseURL(endpoint);
    if (!base)
        co_return endpoint;
    try {
        auto fetching = m_requests.fetchJSON<RemoteDeviceInfo>(*base, u"api/info"_s, ProbeTimeout,
                                                               std::nullopt);
        const RemoteDeviceInfo info = co_await std::move(fetching);
        co_return enriched(endpoint, info);
    } catch (const Error&) {
        co_return endpoint; // listed as it announced itself
    }
}

void Discovery::upsertDiscoveredDevice(const TVEndpoint& endpoint) {
    const QString key = endpointKey(endpoint);
    const auto known = std::ranges::find(m_discoveredDevices, key,
                                         [](const auto& each) { return endpointKey(each); });
    if (known == m_discoveredDevices.end()) {
        m_discoveredDevices.append(endpoint);
    } else {
        *known = endpoint;
        const auto& selected = m_selector.selectedDevice();
        if (selected && endpointKey(*selected) == key)
            m_selector.updateSelectedDevice(endpoint);
    }
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
