#include "app/refresh_cycle.h"

namespace quiv {

using namespace std::chrono_literals;

namespace {

constexpr auto PauseBetweenPasses = 2s;

} // namespace

RefreshCycle::RefreshCycle(const SelectedDevice& selected, Library& library, Pairing& pairing,
                           Clock& clock)
    : m_selected(selected), m_library(library), m_pairing(pairing), m_clock(clock) {}

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
    auto loading = m_library.loadLibrary(Library::Load::Visible);
    co_await std::move(loading);
    auto pairing = m_pairing.refreshPairingStatus(Pairing::Announce::Yes, Pairing::Errors::Quiet);
    co_await std::move(pairing);
}

Task<> RefreshCycle::laterPass() {
    if (!m_pairing.state().requiresControlPairing) {
        auto loading = m_library.loadLibrary(Library::Load::Quiet);
        co_await std::move(loading);
    }
    auto pairing = m_pairing.refreshPairingStatus(Pairing::Announce::No, Pairing::Errors::Quiet);
    co_await std::move(pairing);
}

} // namespace quiv
