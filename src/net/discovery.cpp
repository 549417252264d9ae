#include "net/discovery.h"

#include <algorithm>
#include <utility>

namespace quiv {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto LongestResolving = 1h; // then it is subscribed anew
constexpr auto CountingTime = 10s;    // of announcements that are left out
constexpr auto ProbeTimeout = 1500ms;
constexpr auto WaitForRememberedTv = 1500ms;
constexpr auto SettlingTime = 3s; // without news; most TVs answer within one
constexpr auto LongestSearch = 10s;

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

std::optional<TVEndpoint> endpointOf(const ResolvedService& service,
                                     const AddressPreference& preference) {
    if (service.port < 1)
        return std::nullopt;
    TVEndpoint endpoint;
    endpoint.name = service.name;
    endpoint.port = service.port;
    QList<TVEndpoint> choices;
    for (const HostAddress& address : service.addresses) {
        endpoint.host = address.toText();
        if (address.family == HostAddress::Family::IPv4)
            choices.append(endpoint);
    }
    if (choices.isEmpty()) {
        endpoint.host = withoutDotsAtEnds(service.hostName.value_or(QString()));
        const bool isLocal = endpoint.host.endsWith(".local"_L1, Qt::CaseInsensitive);
        return isLocal ? std::optional(endpoint) : std::nullopt;
    }
    const auto rank = [&preference](const TVEndpoint& choice) {
        const QString key = endpointKey(choice);
        const qsizetype position = preference.preferred.indexOf(key);
        return std::pair(key == preference.avoided,
                         position < 0 ? preference.preferred.size() : position);
    };
    return *std::ranges::min_element(choices, {}, rank);
}

Discovery::Discovery(const TvAccess& tvs, ServiceBrowser& browser, const SettingsStore& settings,
                     Clock& clock, SystemLog& log, Selector& selector, QObject* parent)
    : QObject(parent),
      m_tvs(tvs),
      m_browser(browser),
      m_settings(settings),
      m_clock(clock),
      m_log(log),
      m_selector(selector) {}

Discovery::~Discovery() {
    m_browser.stop();
}

void Discovery::refreshDiscovery() {
    m_discoveredDevices.clear();
    Q_EMIT devicesChanged();
    m_browser.stop();
    m_tvs.say(u"Searching for TVs on local network..."_s);
    beginSearching();
    m_wait = m_clock.after(WaitForRememberedTv, [this] {
        m_wait.reset();
        ensureSelectedDevice();
    });
    m_following.clear();
    m_leftOut = 0;
    m_report.reset();
    m_browser.search(
        u"_ombra._tcp."_s, u"local."_s, [this](const FoundService& service) { begin(service); },
        [this](const FoundService& service) { end(service); });
}

void Discovery::setNetworkProblem(const NetworkProblem& problem) {
    const NetworkProblem before = std::exchange(m_networkProblem, problem);
    if (before == problem)
        return;
    if (!problem.isKnown())
        beginSearching();
    Q_EMIT networkProblemChanged();
}

void Discovery::beginSearching() {
    m_latestSettling = m_clock.now() + LongestSearch;
    expectNews();
}

// The search ends when nothing has come for a while; what comes later is listed all the same.
void Discovery::expectNews() {
    using std::chrono::milliseconds;
    const auto left = std::chrono::duration_cast<milliseconds>(m_latestSettling - m_clock.now());
    const auto delay = std::clamp<milliseconds>(left, 0ms, SettlingTime);
    m_settling = m_clock.after(delay, [this] {
        m_settling.reset();
        Q_EMIT searchingChanged();
    });
    Q_EMIT searchingChanged();
}

void Discovery::begin(const FoundService& service) {
    if (isSearching())
        expectNews();
    if (!hasPlaceFor(service.name))
        makeRoom();
    if (!hasPlaceFor(service.name))
        return leaveOut();
    Following& following = m_following[service.name];
    following.service = service;
    following.task = follow(service, Announce::Yes);
}

// One place is kept for the TV that was selected last.
bool Discovery::hasPlaceFor(const QString& serviceName) const {
    if (m_following.contains(serviceName))
        return true;
    const auto remembered = m_settings.text(QString::fromUtf16(SelectedServiceKey));
    const bool isKept =
        remembered && *remembered != serviceName && !m_following.contains(*remembered);
    return m_following.size() < MostFollowed - (isKept ? 1 : 0);
}

// Gives up a TV that is announced no longer, unless it is the selected one.
void Discovery::makeRoom() {
    const auto& selected = m_selector.selectedDevice();
    const QString selectedKey = selected ? endpointKey(*selected) : QString();
    const auto gone = std::ranges::find_if(m_following, [&](const auto& entry) {
        return entry.second.task.isDone() && entry.second.key != selectedKey;
    });
    if (gone == m_following.end())
        return;
    const QString key = gone->second.key;
    m_following.erase(gone);
    if (isInUse(key))
        return;
    m_discoveredDevices.removeIf([&](const auto& each) { return endpointKey(each) == key; });
    Q_EMIT devicesChanged();
}

void Discovery::leaveOut() {
    ++m_leftOut;
    if (m_report)
        return;
    m_report = m_clock.after(CountingTime, [this] {
        m_log.write(u"QuivController left out %1 announcements: too many TVs"_s.arg(m_leftOut));
    });
}

// The entry stays, and is taken along should the TV come back elsewhere.
void Discovery::end(const FoundService& service) {
    const auto found = m_following.find(service.name);
    if (found == m_following.end())
        return;
    found->second.task.cancel();
    if (found->second.key.isEmpty())
        m_following.erase(found);
}

void Discovery::resolveAnew(const QString& key) {
    for (auto& [name, following] : m_following) {
        if (following.key != key)
            continue;
        following.avoided = key;
        following.task = follow(following.service, Announce::No);
    }
}

QString Discovery::serviceNameOf(const QString& key) const {
    const auto found = std::ranges::find_if(
        m_following, [&](const auto& entry) { return entry.second.key == key; });
    return found == m_following.end() ? QString() : found->first;
}

bool Discovery::isInUse(const QString& key) const {
    return std::ranges::any_of(m_following,
                               [&](const auto& entry) { return entry.second.key == key; });
}

// From an announcement to an entry of the list, which goes along wherever the service moves.
Task<> Discovery::follow(FoundService service, Announce announce) {
    std::optional<ResolvedService> place;
    while (true) {
        const auto resolved = co_await m_browser.resolve(service, LongestResolving, place);
        if (!resolved)
            continue;
        place = resolved;
        co_await list(*resolved, announce);
        announce = Announce::Yes;
    }
}

Task<> Discovery::list(ResolvedService place, Announce announce) {
    Following& following = m_following.at(place.name); // owns this task
    const auto endpoint = endpointOf(place, preferenceFor(following));
    if (!endpoint)
        co_return;
    const auto info = co_await probeDeviceInfo(*endpoint);
    const QString oldKey = std::exchange(following.key, endpointKey(*endpoint));
    if (info)
        following.avoided.clear();
    else if (oldKey == following.key)
        co_return; // what is known of it stays
    upsertDiscoveredDevice(info ? enriched(*endpoint, *info) : knownRecord(*endpoint, oldKey),
                           oldKey);
    if (isSearching())
        expectNews();
    if (announce == Announce::Yes || oldKey != following.key)
        m_tvs.say(u"Found %1 TV device(s)"_s.arg(m_discoveredDevices.size()));
}

AddressPreference Discovery::preferenceFor(const Following& following) const {
    return {.preferred = {rememberedKey(), following.key}, .avoided = following.avoided};
}

QString Discovery::rememberedKey() const {
    return m_settings.text(QString::fromUtf16(SelectedDeviceKey)).value_or(QString()).trimmed();
}

Task<std::optional<RemoteDeviceInfo>> Discovery::probeDeviceInfo(TVEndpoint endpoint) {
    const auto base = baseURL(endpoint);
    if (!base)
        co_return std::nullopt;
    const bool isRemembered = endpointKey(endpoint) == rememberedKey();
    const auto priority = isRemembered ? HttpPriority::Standard : HttpPriority::Background;
    Semaphore& turn = isRemembered ? m_rememberedProbe : m_probes;
    const Semaphore::Permit permit = co_await turn.acquire();
    try {
        const Tv tv = m_tvs.at(*base);
        co_return co_await tv.get<RemoteDeviceInfo>(u"api/info"_s, ProbeTimeout, {}, priority);
    } catch (const Error&) {
        co_return std::nullopt;
    }
}

// A TV that does not answer the probe is listed as it is known, else as it announced itself.
TVEndpoint Discovery::knownRecord(const TVEndpoint& endpoint, const QString& oldKey) const {
    const auto& selected = m_selector.selectedDevice();
    for (const QString& key : {endpointKey(endpoint), oldKey}) {
        const TVEndpoint* known = deviceWithKey(key);
        if (!known && selected && endpointKey(*selected) == key)
            known = &*selected;
        if (known) {
            TVEndpoint record = *known;
            record.host = endpoint.host;
            record.port = endpoint.port;
            return record;
        }
    }
    return endpoint;
}

// The device takes the place of the one with the old key, in the list and as the selected one.
void Discovery::upsertDiscoveredDevice(const TVEndpoint& device, const QString& oldKey) {
    const QString key = endpointKey(device);
    const bool isOldInUse = isInUse(oldKey);
    m_discoveredDevices.removeIf([&](const TVEndpoint& each) {
        const QString keyOfEach = endpointKey(each);
        return keyOfEach == key || (keyOfEach == oldKey && !isOldInUse);
    });
    const auto place = std::upper_bound(m_discoveredDevices.begin(), m_discoveredDevices.end(),
                                        device, comesBefore);
    m_discoveredDevices.insert(place, device);
    const auto& selected = m_selector.selectedDevice();
    const QString selectedKey = selected ? endpointKey(*selected) : QString();
    if (selectedKey == key)
        m_selector.updateSelectedDevice(device);
    Q_EMIT devicesChanged();
    if (selected && selectedKey == oldKey && selectedKey != key && !isOldInUse)
        m_selector.selectDevice(device);
    else
        ensureSelectedDevice();
}

void Discovery::ensureSelectedDevice() {
    const auto& selected = m_selector.selectedDevice();
    if (selected && deviceWithKey(endpointKey(*selected)))
        return;
    const QString persistedKey = rememberedKey();
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
