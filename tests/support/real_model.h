#pragma once

#include "model/ombra_mac_model.h"
#include "platform/http/curl_http_session.h"
#include "support/fake_file_dialogs.h"
#include "support/fake_player.h"
#include "support/fake_service_browser.h"
#include "support/fake_still_extractor.h"
#include "support/memory_settings.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace quiv {

// The model over real sockets and the real clock; only announcements and stills are made by the
// test.
struct RealModel {
    RealModel() : RealModel(ownSettings) {}
    explicit RealModel(SettingsStore& settings)
        : model({http, browser, settings, clock, stills, log, dialogs.preferred, local.ports}) {}

    // A TV at this port of this machine is found.
    void find(quint16 port) {
        model.appear();
        browser.announce(serviceAt(u"Announced"_s, {127, 0, 0, 1}, port));
    }
    // Finds the TV and pairs with it; returns false if that takes too long.
    bool pair(quint16 port, const QString& code) {
        find(port);
        if (!QTest::qWaitFor([this] { return pairing().requiresControlPairing; }))
            return false;
        model.pairing()->verifyPairingCode(code);
        return QTest::qWaitFor([this] { return pairing().isControlPaired; });
    }
    const QString& status() { return model.status()->statusMessage(); }
    const PairingState& pairing() { return model.pairing()->state(); }
    qsizetype rows() { return model.library()->content().groupedFiles.size(); }

    MemorySettings ownSettings;
    SystemClock clock;
    CurlHttpSession http;
    FakeServiceBrowser browser{clock};
    FakeStillExtractor stills;
    MemoryLog log;
    FakeDesktopDialogs dialogs;
    FakeLocalPorts local;
    OmbraMacModel model;
};

} // namespace quiv
