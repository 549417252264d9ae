#pragma once

#include "net/tv.h"
#include "net/tv_endpoint.h"
#include "platform/async/task.h"
#include "platform/async/task_set.h"
#include "platform/clock.h"
#include "platform/service_browser.h"
#include "platform/settings_store.h"

#include <QList>
#include <QObject>

#include <memory>
#include <optional>

namespace quiv {

// The settings key of the endpointKey that was selected last.
inline constexpr char16_t SelectedDeviceKey[] = u"ombra.selectedDeviceKey";

// The address a TV is listed under: its first IPv4 address, else its host name without dots at the
// ends. Returns nullopt if it has neither, or no port.
std::optional<TVEndpoint> endpointOf(const ResolvedService& service);

// Finds the TVs that announce themselves in the local network, and sees to it that one is selected.
//
// Owns the list of TVs and the tasks that resolve and probe them; they go with it.
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

    Discovery(const TvAccess& tvs, ServiceBrowser& browser, const SettingsStore& settings,
              Clock& clock, Selector& selector, QObject* parent = nullptr);
    ~Discovery() override;

    // Unique by endpointKey, in the order of comesBefore().
    const QList<TVEndpoint>& discoveredDevices() const { return m_discoveredDevices; }
    // Empties the list and searches anew.
    void refreshDiscovery();

Q_SIGNALS:
    void devicesChanged();

private:
    Task<> follow(FoundService service);
    Task<std::optional<RemoteDeviceInfo>> probeDeviceInfo(TVEndpoint endpoint);
    void upsertDiscoveredDevice(const TVEndpoint& device);
    TVEndpoint knownRecord(const TVEndpoint& endpoint) const;
    void ensureSelectedDevice();
    const TVEndpoint* deviceWithKey(const QString& key) const;

    const TvAccess m_tvs;
    ServiceBrowser& m_browser;
    const SettingsStore& m_settings;
    Clock& m_clock;
    Selector& m_selector;
    QList<TVEndpoint> m_discoveredDevices;
    // While it runs, no other TV takes the place of the one that was selected last.
    std::unique_ptr<Clock::Timer> m_wait;
    TaskSet m_tasks;
};

} // namespace quiv
