#pragma once

#include "simulator/announcing/network_addresses.h"

#include <avahi-common/defs.h>

#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace quiv::simulator {

// What is announced over DNS-SD.
struct Announcement {
    QString serviceName;
    quint16 port = 0;
};

// Announces the TV as "_ombra._tcp" in "local." and picks another name when one is taken. The TV is
// a host of its own, with the addresses that the machine has when it is announced: several
// simulators may run on one machine, and an address of a family that the TV does not listen to
// stays out. The callbacks come on a thread of its own.
class Announcer {
public:
    enum class Way {
        Auto, // the system's daemon when it runs, else embedded
        Daemon,
        Embedded, // an mDNS stack in this process
    };
    struct Settings {
        Way way = Way::Auto;
        QString hostName; // first label; by default the machine's, or one of this process
        bool ipv6Only = false;
        std::function<void(QString serviceName)> announced;
        std::function<void(QString reason)> failed;
    };

    // Returns nullptr, after a call of `failed`, if announcing is not possible.
    static std::unique_ptr<Announcer> create(const Settings& settings);

    virtual ~Announcer() = default;
    Q_DISABLE_COPY_MOVE(Announcer)

    // Replaces the previous announcement.
    void announce(const Announcement& announcement);
    // Says goodbye.
    void withdraw();

protected:
    explicit Announcer(Settings settings);

    // Called on the callback thread, or with the lock held.
    void publish();
    void groupChanged(AvahiEntryGroupState state);
    void broke(int error);

    // The mDNS stack; each int is an Avahi error code. The lock keeps the callback thread out.
    virtual void lock() = 0;
    virtual void unlock() = 0;
    virtual bool isReady() const = 0;
    virtual void reset() = 0;
    virtual int addService(const char* name, const char* host, quint16 port) = 0;
    virtual int addAddress(const char* host, const InterfaceAddress& address) = 0;
    virtual int commit() = 0;

    static constexpr const char* serviceType = "_ombra._tcp";

private:
    void collided();
    int addRecords();
    int addAddresses(const QByteArray& host, AddressFamily family);
    void takeOtherNames();

    const Settings m_settings;
    QString m_hostName;
    std::optional<Announcement> m_announcement;
};

} // namespace quiv::simulator
