#pragma once

#include "library/library.h"
#include "net/pairing.h"
#include "net/selected_device.h"
#include "platform/clock.h"
#include "platform/task.h"

namespace quiv {

// Keeps what is shown of the selected TV current: everything once, then again two seconds after
// each pass has ended. Asks for the pairing status alone while the TV wants this client paired.
//
// One run at a time; destroying the cycle or stopping it cancels the request under way.
class RefreshCycle {
public:
    RefreshCycle(const SelectedDevice& selected, Library& library, Pairing& pairing, Clock& clock);

    // Begins with a first pass, whatever was under way.
    void restart();
    void stop();

private:
    Task<> run();
    Task<> firstPass();
    Task<> laterPass();

    const SelectedDevice& m_selected;
    Library& m_library;
    Pairing& m_pairing;
    Clock& m_clock;
    Task<> m_run;
};

} // namespace quiv
