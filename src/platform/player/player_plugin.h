#pragma once

#include "platform/player/player_screen.h"

#include <QByteArray>
#include <QString>
#include <QtPlugin>

namespace quiv {

// An address to stream from, and where its host is if the system's own look-up may not know.
struct StreamAddress {
    QByteArray url;        // "http", fully percent-encoded; carries credentials
    QByteArray connectTo;  // "::HOST:" for libcurl; empty: look the host up
    long addressScope = 0; // of an IPv6 address; 0: none
};

// The library with the decoders, which is loaded when the first video plays here. Main thread only.
class PlayerPlugin {
public:
    virtual ~PlayerPlugin() = default;
    virtual OpenedPlayer open(const StreamAddress& address) = 0;
    // Versions and abilities, for the report of a fault.
    virtual QString description() = 0;
};

} // namespace quiv

#define QUIV_PLAYER_PLUGIN "quiv.PlayerPlugin"
Q_DECLARE_INTERFACE(quiv::PlayerPlugin, QUIV_PLAYER_PLUGIN)
