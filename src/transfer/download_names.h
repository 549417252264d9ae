#pragma once

#include <QString>

namespace quiv {

// What a TV's name for a file becomes on this computer: its last component without control
// characters, leading dots, and dots and blanks at its end, at most 255 bytes of UTF-8 with its
// extension kept; "Download" if nothing is left.
QString proposedDownloadName(const QString& remoteName);

// The name for a file whose name is taken `number` times already: "Film (1).mkv". Itself for 0.
QString numberedDownloadName(const QString& name, int number);

} // namespace quiv
