#include "platform/avahi/avahi_backend_choice.h"

#include <algorithm>

namespace quiv {

AvahiBackendChoice::AvahiBackendChoice(const AvahiPoll* poll,
                                       std::chrono::milliseconds retryInterval)
    : m_poll(poll), m_retryInterval(retryInterval) {}

void AvahiBackendChoice::lookForDaemon(Instant now) {
    if (m_daemon || now < m_daemonTryAt)
        return;
    m_daemon = AvahiDaemonBackend::create(m_poll);
    if (m_daemon && m_daemon->isBroken())
        m_daemon.reset();
    m_daemonTryAt = now + m_retryInterval;
}

bool AvahiBackendChoice::isOutdated(Instant now) const {
    if (m_daemon && m_daemon->isBroken())
        return true;
    if (wantedKind() == AvahiBackendKind::SystemDaemon)
        return m_kind != AvahiBackendKind::SystemDaemon;
    return !m_embedded && now >= m_embeddedTryAt;
}

void AvahiBackendChoice::renew(Instant now) {
    if (m_daemon && m_daemon->isBroken()) {
        m_daemon.reset();
        m_daemonTryAt = now;
        lookForDaemon(now);
    }
    if (wantedKind() == AvahiBackendKind::SystemDaemon) {
        m_embedded.reset();
        m_embeddedTryAt = {};
        m_kind = AvahiBackendKind::SystemDaemon;
    } else {
        useEmbedded(now);
    }
}

std::optional<AvahiBackendChoice::Instant> AvahiBackendChoice::nextTry() const {
    std::optional<Instant> next;
    if (!m_daemon)
        next = m_daemonTryAt;
    if (m_kind == AvahiBackendKind::None)
        next = next ? std::min(*next, m_embeddedTryAt) : m_embeddedTryAt;
    return next;
}

AvahiBackend* AvahiBackendChoice::backend() const {
    if (m_kind == AvahiBackendKind::SystemDaemon)
        return m_daemon.get();
    return m_embedded.get();
}

AvahiBackendKind AvahiBackendChoice::wantedKind() const {
    const bool daemonRuns = m_daemon && m_daemon->isRunning();
    return daemonRuns ? AvahiBackendKind::SystemDaemon : AvahiBackendKind::Embedded;
}

void AvahiBackendChoice::useEmbedded(Instant now) {
    if (!m_embedded)
        m_embedded = AvahiEmbeddedBackend::create(m_poll);
    m_embeddedTryAt = now + m_retryInterval;
    m_kind = m_embedded ? AvahiBackendKind::Embedded : AvahiBackendKind::None;
}

} // namespace quiv
