#pragma once

#include "simulator/tv/television.h"

#include <QJsonObject>

namespace quiv::simulator {

// All that the TV's screen shows, at one moment; README.md lists its fields.
QJsonObject screenRecord(Television& television);

} // namespace quiv::simulator
