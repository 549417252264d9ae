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
    std::optional<quint16> port; // by default 8080, or a free one if that is taken
    quint16 controlPort = 0;     // 0 takes a free one
    bool logsRequests = false;
    bool exitWithParent = false;

    QString mediaFolder;
    QString usbFolder; // is empty if there is no USB drive
    bool makesSamples = true;
    int generatedCount = 0;
    std::chrono::milliseconds moveDuration{4000};
    std::optional<qint64> freeBytes; // a lot by default

    Pairing::Settings pairing;
    bool browsingNeedsPairing = false;

    bool announces = true;
    Announcer::Way announceWay = Announcer::Way::Auto;
    QString serviceName;
    QString hostName;
    std::optional<quint16> announcedPort; // the real one by default
    bool ipv6Only = false;
};

// Returns nullopt if the arguments make no sense; `problem` then says why. Prints the help or the
// version and ends the program when asked to.
std::optional<Options> parseOptions(const QStringList& arguments, QString* problem);

} // namespace quiv::simulator
