#pragma once

#include "ui/window_actions.h"

#include <QStringList>

namespace quiv {

// Writes down what the window asks for.
class RecordingActions final : public WindowActions {
public:
    void refreshDiscovery() override { calls.append(QStringLiteral("refresh")); }
    void selectDevice(const QString& endpointKey) override {
        calls.append(QStringLiteral("select ") + endpointKey);
    }
    void verifyPairingCode(const QString& code) override {
        calls.append(QStringLiteral("verify ") + code);
    }
    void cancelPairing() override { calls.append(QStringLiteral("cancel pairing")); }

    QStringList calls;
};

} // namespace quiv
