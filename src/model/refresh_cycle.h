#pragma once

#include "library/library.h"
#include "net/pairing.h"
#include "net/reachability.h"
#include "net/selected_device.h"
#include "platform/async/task.h"
#include "platform/clock.h"
#include "playback/remote_playback.h"
#include "transfer/storage_move.h"

namespace quiv {

// Keeps what is shown of the selected TV current: everything once, then again two seconds after
// each pass has ended. Asks for the pairing status alone while the TV wants this client paired.
//
// One run at a time; destroying the cycle or stopping it cancels the request under way.
class RefreshCycle {
public:
    // What it keeps current; each outlives it.
    struct Parts {
        Library& library;
        RemotePlayback& playback;
        StorageMove& storageMove;
        Pairing& pairing;
        Reachability& reachability; // is told when a pass has ended
    };

    RefreshCycle(const SelectedDevice& selected, const Parts& parts, Clock& clock);

    // Begins with a first pass, whatever was under way.
    void restart();
    // Begins the next pass now if the cycle pauses.
    void hasten();
    // Drops the pass under way, or the pause, and begins a pass of its kind now.
    void renew();
    void stop();

private:
    enum class Pass { First, Later };

    Task<> run(Pass first);
    Task<> firstPass();
    Task<> laterPass();
    Task<> readPlayerAndMove();

    const SelectedDevice& m_selected;
    const Parts m_parts;
    Clock& m_clock;
    Pass m_pass = Pass::First; // under way, or next
    bool m_isPausing = false;
    Task<> m_run;
};

} // namespace quiv
