#include "model/refresh_cycle.h"

namespace quiv {

using namespace std::chrono_literals;

namespace {

constexpr auto PauseBetweenPasses = 2s;

} // namespace

RefreshCycle::RefreshCycle(const SelectedDevice& selected, const Parts& parts, Clock& clock)
    : m_selected(selected), m_parts(parts), m_clock(clock) {}

void RefreshCycle::restart() {
    m_run.cancel();
    m_run = run();
}

void RefreshCycle::stop() {
    m_run.cancel();
}

Task<> RefreshCycle::run() {
    if (!m_selected.isSelected())
        co_return;
    auto first = firstPass();
    co_await std::move(first);
    while (true) {
        auto pause = sleepFor(m_clock, PauseBetweenPasses);
        co_await std::move(pause);
        auto later = laterPass();
        co_await std::move(later);
    }
}

Task<> RefreshCycle::firstPass() {
    auto loading = m_parts.library.loadLibrary(Library::Load::Visible);
    co_await std::move(loading);
    auto reading = readPlayerAndMove();
    co_await std::move(reading);
    auto pairing =
        m_parts.pairing.refreshPairingStatus(Pairing::Announce::Yes, Pairing::Errors::Quiet);
    co_await std::move(pairing);
}

Task<> RefreshCycle::laterPass() {
    if (!m_parts.pairing.state().requiresControlPairing) {
        auto reading = readPlayerAndMove();
        co_await std::move(reading);
        auto loading = m_parts.library.loadLibrary(Library::Load::Quiet);
        co_await std::move(loading);
    }
    auto pairing =
        m_parts.pairing.refreshPairingStatus(Pairing::Announce::No, Pairing::Errors::Quiet);
    co_await std::move(pairing);
}

Task<> RefreshCycle::readPlayerAndMove() {
    auto playback = m_parts.playback.refreshPlayback(RemotePlayback::Errors::Quiet);
    co_await std::move(playback);
    auto move = m_parts.storageMove.refreshMoveStatus(StorageMove::Errors::Quiet);
    co_await std::move(move);
}

} // namespace quiv
