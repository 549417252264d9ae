#pragma once

#include <QString>

namespace quiv {

// Whether `a` comes before `b` by code points. QString's own order is by UTF-16 code units, which
// puts characters beyond U+FFFF before some others.
bool comesBeforeByCodePoints(QStringView a, QStringView b);

} // namespace quiv
