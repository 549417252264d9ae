#pragma once

#include "model/ombra_mac_model.h"
#include "platform/async/threads.h"
#include "support/fake_clock.h"
#include "support/fake_file_dialogs.h"
#include "support/fake_http_session.h"
#include "support/fake_player.h"
#include "support/fake_service_browser.h"
#include "support/fake_still_extractor.h"
#include "support/memory_settings.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

namespace quiv {

inline const QString FilesPath = u"api/files"_s;
inline const QString InfoPath = u"api/info"_s;
inline const QString PlaybackPath = u"api/playback"_s;
inline const QString MoveStatusPath = u"api/move-status"_s;
inline const QString StatusPath = u"api/mac/auth/status"_s;
inline const QString VerifyPath = u"api/mac/auth/verify"_s;
inline const QString CancelPath = u"api/mac/auth/cancel"_s;

inline TVEndpoint tvNamed(const QString& name, const QString& host, int port = 8080) {
    TVEndpoint endpoint;
    endpoint.name = name;
    endpoint.host = host;
    endpoint.port = port;
    return endpoint;
}

inline const TVEndpoint FirstTv = tvNamed(u"TV"_s, u"tv.local"_s);
inline const TVEndpoint OtherTv = tvNamed(u"Other"_s, u"other.local"_s);

// The whole model over a clock, a network and settings in the test's hand.
struct ModelFixture {
    FakeClock clock;
    FakeHttpSession http;
    FakeServiceBrowser browser{clock};
    MemorySettings settings;
    FakeStillExtractor stills;
    MemoryLog log;
    FakeDesktopDialogs dialogs;
    FakeLocalPorts local;
    OmbraMacModel model{{http, browser, settings, clock, stills, log, dialogs.preferred, local.ports}};

    const QString& status() { return model.status()->statusMessage(); }
    const PairingState& pairing() { return model.pairing()->state(); }
    const LibraryContent& library() { return model.library()->content(); }

    // The sent requests for a path, as "METHOD path?query", oldest first; forgets them.
    QStringList takeTargets(const QString& path) {
        QStringList targets;
        for (const HttpRequest& request : std::exchange(http.sent, {})) {
            const QString target =
                QString::fromLatin1(request.url.mid(request.url.indexOf("api/")));
            if (target.section(u'?', 0, 0) == path)
                targets.append(QString::fromLatin1(request.method) + u' ' + target);
        }
        return targets;
    }
    // A TV is selected and this client may control it; no cycle runs.
    void selectPaired(const TVEndpoint& device) {
        model.selectDevice(device);
        const Task<> check =
            model.pairing()->refreshPairingStatus(Pairing::Announce::No, Errors::Quiet);
        http.answer(StatusPath, R"({"authorized":true,"expiresInSec":86400})");
        http.sent.clear();
    }

    // Lets the event loop turn until what it began on other threads is done as well.
    static void turn() {
        using namespace std::chrono_literals;
        do {
            awaitDiskThreads(10s);
            awaitBackground(10s);
            QCoreApplication::processEvents();
        } while (!awaitDiskThreads(0s) || !awaitBackground(0s));
        QCoreApplication::processEvents();
    }
    // A shown window with this TV selected, whose first request waits.
    void select(const TVEndpoint& device) {
        model.appear();
        clock.advance(std::chrono::seconds(2)); // the TV that was selected last has not come
        model.selectDevice(device);
        turn();
    }
};

} // namespace quiv
