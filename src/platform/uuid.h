#pragma once

#include <QString>

namespace quiv {

// A fresh random UUID, lower-case, 36 characters.
QString randomUuid();

} // namespace quiv
