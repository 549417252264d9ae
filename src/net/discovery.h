#pragma once

#include "net/network_problem.h"
#include "net/selected_device.h"
#include "net/tv.h"
#include "net/tv_endpoint.h"
#include "platform/async/semaphore.h"
#include "platform/async/task.h"
#include "platform/clock.h"
#include "platform/service_browser.h"
#include "platform/settings_store.h"
#include "platform/system_log.h"

#include <QList>
#include <QObject>
#include <QStringList>

#include <map>
#include <memory>
#include <optional>

namespace quiv {

// Which of several addresses of a TV to take.
struct AddressPreference {
    QStringList preferred; // endpointKeys, the best first
    QString avoided;       // the endpointKey at which it has not answered
};

// The address a TV is listed under: an IPv4 address, preferred or else the first that is not to be
// avoided, else its host name in ".local" without dots at the ends. Returns nullopt if it has
// neither, or no port.
std::optional<TVEndpoint> endpointOf(const ResolvedService& service,
                                     const AddressPreference& preference = {});

// Finds the TVs that announce themselves in the local network, and sees to it that one is selected.
//
// Every TV is followed for as long as it is announced: one that does not resolve is listed once it
// does, and one that moves to another address or port takes its entry along. When too many announce
// themselves, there is always a place for the one that was selected last. Owns the list of TVs and
// the tasks that follow them; they go with it.
class Discovery : public QObject {
    Q_OBJECT

public:
    // What selects a TV.
    class Selector {
    public:
        virtual ~Selector() = default;
        virtual const std::optional<TVEndpoint>& selectedDevice() const = 0;
        virtual void selectDevice(const TVEndpoint& device) = 0;
        // The selected TV was found again, perhaps with a newer record: no reset, no message.
        virtual void updateSelectedDevice(const TVEndpoint& device) = 0;
    };

    static constexpr std::size_t MostFollowed = 256; // a home has a few; the rest is noise
    static constexpr int ProbesAtOnce = 8;

    Discovery(const TvAccess& tvs, ServiceBrowser& browser, const SettingsStore& settings,
              Clock& clock, SystemLog& log, Selector& selector, QObject* parent = nullptr);
    ~Discovery() override;

    // Unique by endpointKey, in the order of comesBefore().
    const QList<TVEndpoint>& discoveredDevices() const { return m_discoveredDevices; }
    // Whether a search is under way: until nothing new has come for a while.
    bool isSearching() const { return m_settling != nullptr; }
    // What stands in the way of any search, as far as that is known.
    const NetworkProblem& networkProblem() const { return m_networkProblem; }
    // Once the problem is gone, a search is under way again.
    void setNetworkProblem(const NetworkProblem& problem);
    // Empties the list and searches anew.
    void refreshDiscovery();
    // The TV with this endpointKey does not answer: looks where it is now.
    void resolveAnew(const QString& key);
    // The name under which the TV with this endpointKey is announced; empty if it is not listed.
    QString serviceNameOf(const QString& key) const;

Q_SIGNALS:
    void devicesChanged();
    void searchingChanged();
    void networkProblemChanged();

private:
    enum class Announce { Yes, No };
    struct Following {
        FoundService service;
        QString key;     // of its entry in the list; empty if it has none
        QString avoided; // the address at which it has not answered
        Task<> task;
    };

    void beginSearching();
    void expectNews();
    void begin(const FoundService& service);
    bool hasPlaceFor(const QString& serviceName) const;
    void makeRoom();
    void leaveOut();
    void end(const FoundService& service);
    Task<> follow(FoundService service, Announce announce);
    Task<> list(ResolvedService place, Announce announce);
    QString rememberedKey() const;
    AddressPreference preferenceFor(const Following& following) const;
    Task<std::optional<RemoteDeviceInfo>> probeDeviceInfo(TVEndpoint endpoint);
    bool isInUse(const QString& key) const;
    void upsertDiscoveredDevice(const TVEndpoint& device, const QString& oldKey);
    TVEndpoint knownRecord(const TVEndpoint& endpoint, const QString& oldKey) const;
    void ensureSelectedDevice();
    const TVEndpoint* deviceWithKey(const QString& key) const;

    const TvAccess m_tvs;
    ServiceBrowser& m_browser;
    const SettingsStore& m_settings;
    Clock& m_clock;
    SystemLog& m_log;
    Selector& m_selector;
    QList<TVEndpoint> m_discoveredDevices;
    NetworkProblem m_networkProblem;
    // While it runs, no other TV takes the place of the one that was selected last.
    std::unique_ptr<Clock::Timer> m_wait;
    std::unique_ptr<Clock::Timer> m_settling; // while a search is under way
    Clock::Instant m_latestSettling{};
    // One probe is kept for the TV that was selected last.
    Semaphore m_probes{ProbesAtOnce - 1};
    Semaphore m_rememberedProbe{1};
    int m_leftOut = 0;                        // announcements of this search
    std::unique_ptr<Clock::Timer> m_report;   // of these; once a search
    std::map<QString, Following> m_following; // by the service's name
};

} // namespace quiv
