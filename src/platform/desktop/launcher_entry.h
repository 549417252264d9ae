#pragma once

#include <optional>

namespace quiv {

// The application's icon in the desktop's launcher or task bar. Main thread only.
class LauncherEntry {
public:
    virtual ~LauncherEntry() = default;
    // Shows how far something has come, 0 to 1; nullopt takes it away.
    virtual void showProgress(std::optional<double> progress) = 0;
};

} // namespace quiv
