#pragma once

#include <QString>

namespace quiv::simulator {

// A DNS-SD service name is 1 to 63 bytes of UTF-8.
bool isServiceName(const QString& name);
// A service name from any TV name: cut at a character where needed.
QString serviceNameFor(const QString& tvName);

} // namespace quiv::simulator
