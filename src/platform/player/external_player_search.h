#pragma once

#include "platform/player/external_player.h"

#include <QByteArray>

namespace quiv {

// How a desktop entry starts its program with one address; empty if it starts none. "%u" stands for
// the address.
QStringList commandOf(const QByteArray& desktopEntry);

// The command with the address in its place, else behind it.
QStringList withAddress(const QStringList& command, const QString& address);

// Looks for VLC as the desktop knows it, as a program, and among the Flatpaks. Touches disks.
std::optional<PlayerProgram> searchVlc();

} // namespace quiv
