#pragma once

#include "platform/avahi/avahi_backend.h"
#include "platform/avahi/avahi_daemon_backend.h"
#include "platform/avahi/avahi_embedded_backend.h"

#include <chrono>
#include <memory>
#include <optional>

namespace quiv {

// Chooses who answers: the system's daemon while it runs, else the embedded stack, never both, as
// two multicast DNS stacks on one host disturb each other.
//
// Avahi thread only. Whoever asks the backend looks at isOutdated() in every turn of the loop; when
// it is, ends the lookups, calls renew() and asks again.
class AvahiBackendChoice {
public:
    using Instant = std::chrono::steady_clock::time_point;

    AvahiBackendChoice(const AvahiPoll* poll, std::chrono::milliseconds retryInterval);

    // Looks for the bus, if it is absent and the time has come.
    void lookForDaemon(Instant now);
    bool isOutdated(Instant now) const;
    void renew(Instant now);
    // The time at which to look again although nothing happened.
    std::optional<Instant> nextTry() const;

    AvahiBackendKind kind() const { return m_kind; }
    // Returns nullptr while neither can be used.
    AvahiBackend* backend() const;

private:
    AvahiBackendKind wantedKind() const;
    void useEmbedded(Instant now);

    const AvahiPoll* m_poll;
    std::chrono::milliseconds m_retryInterval;
    std::unique_ptr<AvahiDaemonBackend> m_daemon; // also while it only watches for the daemon
    std::unique_ptr<AvahiEmbeddedBackend> m_embedded;
    AvahiBackendKind m_kind = AvahiBackendKind::None;
    Instant m_daemonTryAt{};
    Instant m_embeddedTryAt{};
};

} // namespace quiv
