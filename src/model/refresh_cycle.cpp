#include "model/refresh_cycle.h"

namespace quiv {

using namespace std::chrono_literals;

namespace {

constexpr auto PauseBetweenPasses = 2s;

} // namespace

RefreshCycle::RefreshCycle(const SelectedDevice& selected, const Parts& parts, Clock& clock)
    : m_selected(selected), m_parts(parts), m_clock(clock) {}

void RefreshCycle::restart() {
    m_isPausing = false;
    m_run = run(Pass::First);
}

void RefreshCycle::hasten() {
    if (!m_isPausing)
        return;
    m_isPausing = false;
    m_run = run(Pass::Later);
}

void RefreshCycle::renew() {
    if (m_run.isDone())
        return;
    m_isPausing = false;
    m_run.cancel();
    m_run = run(m_pass);
}

void RefreshCycle::stop() {
    m_isPausing = false;
    m_run.cancel();
}

Task<> RefreshCycle::run(Pass first) {
    if (!m_selected.isSelected())
        co_return;
    m_pass = first;
    if (first == Pass::First)
        co_await firstPass();
    else
        co_await laterPass();
    m_pass = Pass::Later;
    while (true) {
        m_isPausing = true;
        m_parts.reachability.passEnded();
        co_await sleepFor(m_clock, PauseBetweenPasses);
        m_isPausing = false;
        co_await laterPass();
    }
}

Task<> RefreshCycle::firstPass() {
    co_await m_parts.library.loadLibrary(Library::Load::Visible);
    co_await readPlayerAndMove();
    co_await m_parts.pairing.refreshPairingStatus(Pairing::Announce::Yes, Errors::Quiet);
}

Task<> RefreshCycle::laterPass() {
    if (!m_parts.pairing.state().requiresControlPairing) {
        co_await readPlayerAndMove();
        co_await m_parts.library.loadLibrary(Library::Load::Quiet);
    }
    co_await m_parts.pairing.refreshPairingStatus(Pairing::Announce::No, Errors::Quiet);
}

Task<> RefreshCycle::readPlayerAndMove() {
    co_await m_parts.playback.refreshPlayback(Errors::Quiet);
    co_await m_parts.storageMove.refreshMoveStatus(Errors::Quiet);
}

} // namespace quiv
