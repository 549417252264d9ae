#pragma once

#include <QString>

namespace quiv {

// What a report of a fault needs: versions, the desktop, the kinds of network interfaces, who looks
// for TVs and what the player can do. Nothing that names a person, a TV or an address. Needs an
// application object, by which the parts of the installation are found.
QString diagnosis();

} // namespace quiv
