#include "platform/avahi/avahi_worker.h"

#include <algorithm>

namespace quiv {

namespace {

constexpr std::chrono::seconds LongestPause{64};

// Doubles from one second with every failure.
std::chrono::seconds pauseAfter(int failures) {
    return std::min(std::chrono::seconds(1 << std::min(failures, 6)), LongestPause);
}

} // namespace

AvahiWorker::AvahiWorker(std::chrono::milliseconds retryInterval, Deliver deliver,
                         std::function<void()> decided)
    : m_retryInterval(retryInterval),
      m_deliver(std::move(deliver)),
      m_decided(std::move(decided)) {}

void AvahiWorker::run() {
    if (!m_loop.isUsable())
        return;
    m_choice.emplace(m_loop.poll(), m_retryInterval);
    bool usable = true;
    while (usable && !m_stopped) {
        turn(std::chrono::steady_clock::now());
        usable = m_loop.iterate(timeToNextTurn(std::chrono::steady_clock::now()));
    }
    m_asked.clear();
    m_choice.reset();
}

void AvahiWorker::stop() {
    m_loop.post([this] { m_stopped = true; });
}

void AvahiWorker::ask(AvahiQuestionId id, AvahiQuestion question) {
    m_loop.post([this, id, question = std::move(question)] {
        m_asked.emplace(id, Asked{question, nullptr, std::nullopt, 0});
        startLookup(id, std::chrono::steady_clock::now());
    });
}

void AvahiWorker::drop(AvahiQuestionId id) {
    m_loop.post([this, id] { m_asked.erase(id); });
}

void AvahiWorker::turn(Instant now) {
    m_choice->lookForDaemon(now);
    if (m_choice->isOutdated(now))
        renewBackend(now);
    askAgainWhatIsDue(now);
}

void AvahiWorker::renewBackend(Instant now) {
    for (auto& [id, asked] : m_asked)
        asked.lookup.reset();
    m_choice->renew(now);
    m_backendKind = m_choice->kind();
    m_decided();
    for (auto& [id, asked] : m_asked) {
        asked.failures = 0;
        m_deliver(id, AskedAnew{asked.question});
        startLookup(id, now);
    }
}

void AvahiWorker::startLookup(AvahiQuestionId id, Instant now) {
    Asked& asked = m_asked.at(id);
    asked.lookup.reset();
    asked.askAgainAt.reset();
    // Called by lookups only, and these end with their entry.
    const auto askAgain = [&asked] {
        asked.askAgainAt = std::chrono::steady_clock::now() + pauseAfter(asked.failures++);
    };
    const auto deliver = [this, id, &asked](AvahiAnswer answer) {
        asked.failures = 0;
        asked.askAgainAt.reset();
        m_deliver(id, std::move(answer));
    };
    if (AvahiBackend* backend = m_choice->backend())
        asked.lookup = backend->ask(asked.question, {deliver, askAgain});
    if (!asked.lookup)
        asked.askAgainAt = now + pauseAfter(asked.failures++);
}

void AvahiWorker::askAgainWhatIsDue(Instant now) {
    for (auto& [id, asked] : m_asked) {
        if (asked.askAgainAt && *asked.askAgainAt <= now) {
            m_deliver(id, AskedAnew{asked.question});
            startLookup(id, now);
        }
    }
}

std::optional<std::chrono::milliseconds> AvahiWorker::timeToNextTurn(Instant now) const {
    std::optional<Instant> next = m_choice->nextTry();
    for (const auto& [id, asked] : m_asked) {
        if (asked.askAgainAt)
            next = next ? std::min(*next, *asked.askAgainAt) : asked.askAgainAt;
    }
    if (!next)
        return std::nullopt;
    using std::chrono::milliseconds;
    return std::max(milliseconds(0), std::chrono::ceil<milliseconds>(*next - now));
}

} // namespace quiv
