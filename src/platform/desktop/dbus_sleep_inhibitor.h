#pragma once

#include "platform/desktop/sleep_inhibitor.h"

#include <memory>

namespace quiv {

// Asks the desktop's portal, which knows the screen, and the login manager, which knows the rest.
// Without them there is nothing to ask. Calls wait for no bus.
class DBusSleepInhibitor final : public SleepInhibitor {
public:
    enum class Activity {
        VideoPlaying, // the screen stays lit too
        FilesMoving,
    };

    explicit DBusSleepInhibitor(Activity activity);
    ~DBusSleepInhibitor() override;

    void setInhibited(bool isInhibited) override;

private:
    class Lease;
    class PortalLease;
    class LoginLease;

    const Activity m_activity;
    bool m_isInhibited = false;
    std::unique_ptr<Lease> m_portal;
    std::unique_ptr<Lease> m_login;
};

} // namespace quiv
