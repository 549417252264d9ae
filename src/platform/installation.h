#pragma once

#include <QString>

namespace quiv {

// Where the parts of an installation are, relative to the program's own place: a prefix can be
// moved as a whole, and a build folder is laid out alike.
QString helperProgramPath(const QString& name);
QString playerLibraryPath();

} // namespace quiv
