#pragma once

#include "platform/avahi/avahi_backend.h"
#include "platform/avahi/avahi_backend_choice.h"
#include "platform/avahi/avahi_loop.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>

namespace quiv {

// Keeps questions asked, whichever backend answers: when that changes, all are asked anew. One that
// failed stays asked, as its answer may still come, and is asked again after a pause that grows
// from a second to a minute, so nobody is told of failures.
//
// run() is the body of the Avahi thread, on which answers are delivered too. Everything else may be
// called from any thread and does not wait.
class AvahiWorker {
public:
    using Deliver = std::function<void(AvahiQuestionId, AvahiAnswer)>;

    // `decided`: who answers was decided anew, perhaps for the same one as before.
    AvahiWorker(std::chrono::milliseconds retryInterval, Deliver deliver,
                std::function<void()> decided);

    void run();
    void stop();
    void ask(AvahiQuestionId id, AvahiQuestion question);
    void drop(AvahiQuestionId id);
    AvahiBackendKind backendKind() const { return m_backendKind; }

private:
    using Instant = AvahiBackendChoice::Instant;
    struct Asked {
        AvahiQuestion question;
        std::unique_ptr<AvahiLookup> lookup; // nullptr while it waits to be asked again
        std::optional<Instant> askAgainAt;
        int failures; // in a row
    };

    void turn(Instant now);
    void renewBackend(Instant now);
    void startLookup(AvahiQuestionId id, Instant now);
    void askAgainWhatIsDue(Instant now);
    std::optional<std::chrono::milliseconds> timeToNextTurn(Instant now) const;

    AvahiLoop m_loop;
    std::chrono::milliseconds m_retryInterval;
    Deliver m_deliver;
    std::function<void()> m_decided;
    std::atomic<AvahiBackendKind> m_backendKind = AvahiBackendKind::Undecided;
    // On the Avahi thread only; the lookups end before the backend they are asked through.
    std::optional<AvahiBackendChoice> m_choice;
    std::map<AvahiQuestionId, Asked> m_asked;
    bool m_stopped = false;
};

} // namespace quiv
