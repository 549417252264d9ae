#pragma once

#include "model/window_state.h"
#include "platform/desktop/notifier.h"

#include <optional>

namespace quiv {

// Whether bytes of a file move, to a TV or from one.
bool isMovingBytes(const WindowState& state);

// How far what is under way has come, 0 to 1; nullopt while nothing is.
std::optional<double> transferProgress(const WindowState& state);

// What closing the window would break off, as a sentence; empty if nothing.
QString transfersToBreakOff(const WindowState& state);

// What tells a user, who looks at another window, that the queue or the download has ended.
Notification uploadsNotification(const StatusMessage& outcome);
Notification downloadNotification(const StatusMessage& outcome);

} // namespace quiv
