#pragma once

#include "platform/network_interfaces.h"

#include <QObject>
#include <QSocketNotifier>

#include <memory>
#include <set>
#include <string>

namespace quiv {

// Tells when connections that are open may have died without anybody closing them. Watches the
// login manager for the end of a sleep, and the kernel for addresses that come and go; without a
// system bus or such a socket there is nothing to tell. Main thread only.
class SystemChanges : public QObject {
    Q_OBJECT

public:
    explicit SystemChanges(QObject* parent = nullptr);
    ~SystemChanges() override;

    const QList<NetworkInterface>& interfaces() const { return m_interfaces; }

Q_SIGNALS:
    // The computer woke up, or its network addresses changed.
    void networkChanged();
    // interfaces() did; comes before networkChanged() if that has changed, too.
    void interfacesChanged();

private Q_SLOTS:
    void watchSleep();
    void onPrepareForSleep(bool begins);

private:
    void watchAddresses();
    void onAddressNews();

    QList<NetworkInterface> m_interfaces;
    std::set<std::string> m_addresses; // of the interfaces that are up, with their names
    int m_socket = -1;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace quiv
