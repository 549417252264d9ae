#pragma once

#include "platform/desktop/launcher_entry.h"

#include <QString>

namespace quiv {

// Tells whichever launcher listens on the session bus (com.canonical.Unity.LauncherEntry, which
// most docks and task bars know). Tells whole percents only.
class DBusLauncherEntry final : public LauncherEntry {
public:
    explicit DBusLauncherEntry(const QString& applicationId);
    ~DBusLauncherEntry() override;

    void showProgress(std::optional<double> progress) override;

private:
    const QString m_entry; // the desktop entry as an address
    std::optional<int> m_percent;
};

} // namespace quiv
