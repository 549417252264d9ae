#pragma once

#include <QRect>

#include <optional>

class QWindow;

namespace quiv {

class SettingsStore;

// Where the window was when it was last seen, not full screen.
struct WindowPlace {
    QRect area;
    bool isMaximized = false;

    bool operator==(const WindowPlace&) const = default;
};

// Where the window opens: as it was, as far as that is on a screen that is there, else in the
// middle of the first screen. The screens' areas are those that panels leave free, the first one
// first.
WindowPlace firstPlace(const std::optional<WindowPlace>& last, const QList<QRect>& screens);

std::optional<WindowPlace> savedPlace(const SettingsStore& settings);
void savePlace(const WindowPlace& place, SettingsStore& settings);

// Opens the window there and keeps the settings current. Some systems let no program choose or know
// a place; the size holds there, too. The settings must outlive the window.
void rememberPlace(QWindow& window, SettingsStore& settings);

} // namespace quiv
