#pragma once

#include "platform/player/sleep_inhibitor.h"

#include <memory>

namespace quiv {

// Asks the desktop's portal, which knows the screen, and the login manager, which knows the rest.
// Without them there is nothing to ask. Calls wait for no bus.
class DBusSleepInhibitor final : public SleepInhibitor {
public:
    DBusSleepInhibitor();
    ~DBusSleepInhibitor() override;

    void setInhibited(bool isInhibited) override;

private:
    class Lease;
    class PortalLease;
    class LoginLease;

    bool m_isInhibited = false;
    std::unique_ptr<Lease> m_portal;
    std::unique_ptr<Lease> m_login;
};

} // namespace quiv
