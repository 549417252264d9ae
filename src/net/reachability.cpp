#include "net/reachability.h"

#include <bit>
#include <utility>

namespace quiv {

namespace {

constexpr int ToleratedSilentPasses = 1;
constexpr unsigned SilentRequestsToResolve = 3;

} // namespace

bool isWithoutAnswer(HttpErrorCode code) {
    switch (code) {
    case HttpErrorCode::TimedOut:
    case HttpErrorCode::CannotFindHost:
    case HttpErrorCode::CannotConnect:
    case HttpErrorCode::ConnectionLost:
        return true;
    default:
        return false;
    }
}

bool ContactRecord::isReachable() const {
    return silentPasses <= ToleratedSilentPasses;
}

bool ContactRecord::isTimeToResolve() const {
    const auto count = static_cast<unsigned>(silentRequests);
    return count % SilentRequestsToResolve == 0 &&
           std::has_single_bit(count / SilentRequestsToResolve);
}

ContactRecord afterAnswer(ContactRecord) {
    return {.silentRequests = 0, .silentPasses = 0, .hasAnswered = true};
}

ContactRecord afterSilence(ContactRecord record) {
    ++record.silentRequests;
    return record;
}

// A pass that was neither answered nor met with silence, as nothing was asked, changes nothing.
ContactRecord afterPass(ContactRecord record) {
    if (!record.hasAnswered && record.silentRequests > 0)
        ++record.silentPasses;
    record.hasAnswered = false;
    return record;
}

Reachability::Reachability(const SelectedDevice& selected, QObject* parent)
    : QObject(parent), m_selected(selected) {}

void Reachability::answered(const QUrl& base) {
    if (m_selected.baseURL() == base)
        set(afterAnswer(m_record));
}

void Reachability::failed(const QUrl& base, HttpErrorCode code) {
    if (!isWithoutAnswer(code) || m_selected.baseURL() != base)
        return;
    set(afterSilence(m_record));
    if (m_record.isTimeToResolve())
        Q_EMIT resolutionWanted();
}

void Reachability::passEnded() {
    set(afterPass(m_record));
}

void Reachability::reset() {
    set({});
}

void Reachability::set(const ContactRecord& record) {
    const ContactRecord before = std::exchange(m_record, record);
    if (before.isReachable() != record.isReachable())
        Q_EMIT reachableChanged();
}

} // namespace quiv
