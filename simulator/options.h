#pragma once

#include "simulator/announcing/announcer.h"
#include "simulator/tv/pairing.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace quiv::simulator {

// What the command line asks for.
struct Options {
    QString name;
    std::optional<quint16> port; // none: 8080, or a free one when that is taken
    quint16 controlPort = 0;     // 0: a free one
    bool quiet = false;
    bool exitWithParent = false;

    QString mediaFolder;
    QString usbFolder; // empty: no USB drive
    bool makesSamples = true;
    int generatedCount = 0;
    std::chrono::milliseconds moveDuration{4000};
    std::optional<qint64> freeBytes; // none: a lot

    Pairing::Settings pairing;
    bool browsingNeedsPairing = false;

    bool announces = true;
    Announcer::Way announceWay = Announcer::Way::Auto;
    QString serviceName;
    QString hostName;
    std::optional<quint16> announcedPort; // none: the real one
    bool ipv6Only = false;
};

// None when the arguments make no sense; `problem` then says why. Prints the help and ends the
// program when asked to.
std::optional<Options> parseOptions(const QStringList& arguments, QString* problem);

} // namespace quiv::simulator
