#pragma once

#include <QString>

namespace quiv {

// What a report of a fault needs: versions, the desktop, the kinds of network interfaces and who
// looks for TVs. Nothing that names a person, a TV or an address.
QString diagnosis();

} // namespace quiv
