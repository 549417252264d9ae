#pragma once

#include "app/ombra_mac_model.h"
#include "platform/curl_http_session.h"
#include "support/fake_service_browser.h"
#include "support/fake_still_extractor.h"
#include "support/memory_settings.h"

namespace quiv {

// The model over real sockets and the real clock; only announcements and stills are made by the
// test.
struct RealModel {
    // A TV at this port of this machine is found.
    void find(quint16 port) {
        model.appear();
        browser.announce(serviceAt(QStringLiteral("Announced"), {127, 0, 0, 1}, port));
    }
    const QString& status() { return model.status()->statusMessage(); }
    const PairingState& pairing() { return model.pairing()->state(); }

    MemorySettings settings;
    SystemClock clock;
    CurlHttpSession http;
    FakeServiceBrowser browser{clock};
    FakeStillExtractor stills;
    MemoryLog log;
    OmbraMacModel model{{http, browser, settings, clock, stills, log}};
};

} // namespace quiv
