#pragma once

#include "platform/async/task.h"
#include "platform/host_address.h"

#include <QList>
#include <QString>
#include <chrono>
#include <functional>
#include <optional>

namespace quiv {

// An announced service as the network names it; the three together are its identity.
struct FoundService {
    QString name; // as announced: any text of up to 63 bytes of UTF-8
    QString type;
    QString domain;

    bool operator==(const FoundService&) const = default;
};

// Where a service can be reached.
struct ResolvedService {
    QString name;
    QList<HostAddress> addresses;    // all that are known, IPv4 first
    std::optional<QString> hostName; // as announced; may end with a dot
    int port = 0;                    // as announced, 0 included

    bool operator==(const ResolvedService&) const = default;
};

// Finds services that are announced in the local network by DNS-SD.
//
// Main thread only. No failure is reported: a search that cannot run finds nothing, and finds
// something as soon as it can. Everything is called back from the event loop, nothing after stop()
// or after the browser is gone.
class ServiceBrowser {
public:
    using FoundCallback = std::function<void(const FoundService&)>;

    virtual ~ServiceBrowser() = default;

    // Calls `found` for every service of the type ("_http._tcp.") in the domain ("local."), now and
    // as they come, and `lost` when one is announced no longer, until stop() or the next search,
    // which replaces this one. A service announced on several interfaces is found once; one that
    // went and came back, or changed its name, is found again, and so may be all of them when the
    // network changes. Dots at the ends do not matter. Both may use or destroy the browser.
    virtual void search(const QString& type, const QString& domain, FoundCallback found,
                        FoundCallback lost = {}) = 0;
    virtual void stop() = 0;

    // Where the service is, as soon as that is another place than `known`; nullopt when there was
    // no such thing to be learned in time. It stays subscribed for all of that time, so a service
    // that is announced but does not answer is resolved when it is back. IPv4 is preferred: when
    // only an IPv6 address is known at first, IPv4 gets a moment to arrive. A running search is not
    // needed, and stop() does not end it. Destroying the Task cancels; when the browser goes first,
    // the task completes with nullopt from the event loop.
    virtual Task<std::optional<ResolvedService>>
    resolve(FoundService service, std::chrono::milliseconds timeout,
            std::optional<ResolvedService> known = std::nullopt) = 0;
};

} // namespace quiv
