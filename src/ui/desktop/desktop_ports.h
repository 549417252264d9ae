#pragma once

#include "platform/desktop/launcher_entry.h"
#include "platform/desktop/media_controls.h"
#include "platform/desktop/notifier.h"
#include "platform/desktop/sleep_inhibitor.h"

namespace quiv {

// What the desktop offers an application outside its window; each outlives it.
struct DesktopPorts {
    LauncherEntry& launcher;
    MediaControls& mediaControls;
    Notifier& notifier;
    SleepInhibitor& awakeForTransfers;
};

} // namespace quiv
