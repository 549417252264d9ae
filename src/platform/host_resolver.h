#pragma once

#include "platform/async/task.h"
#include "platform/host_address.h"

#include <QString>
#include <chrono>
#include <optional>

namespace quiv {

// Finds the address of a host by its name in the local network ("tv.local"), which the system's own
// resolver knows on some systems only.
//
// Main thread only. Answers may come from memory: for a minute, or what is known of a service that
// was found until that fails.
class HostResolver {
public:
    virtual ~HostResolver() = default;

    // The host's IPv4 address, else its IPv6 address (IPv4 gets a moment to arrive); nullopt when
    // none was to be learned in time, and at once for names that are not under ".local". A dot at
    // the end and letter case do not matter. Destroying the Task cancels; when the resolver goes
    // first, the task completes with nullopt from the event loop.
    virtual Task<std::optional<HostAddress>> resolve(QString hostName,
                                                     std::chrono::milliseconds timeout) = 0;

    // The address did not work: the next resolve asks the network instead of the memory.
    virtual void forget(const QString& hostName) = 0;
};

} // namespace quiv
