#pragma once

#include <QString>

namespace quiv::simulator {

// One line on standard output, at once and never mixed with another thread's.
void printLine(const QString& line);
// One line on standard error.
void printError(const QString& line);

} // namespace quiv::simulator
