#pragma once

#include <QString>

namespace quiv {

// What the window asks of the model. Each call returns at once; its outcome comes back as state.
class WindowActions {
public:
    virtual ~WindowActions() = default;

    virtual void refreshDiscovery() = 0;
    virtual void selectDevice(const QString& endpointKey) = 0;
    virtual void verifyPairingCode(const QString& code) = 0;
    virtual void cancelPairing() = 0;
};

} // namespace quiv
