#pragma once

#include <QString>

namespace quiv {

// The versions of the libraries that play videos here, and which usual formats they can decode.
QString playerDescription();

} // namespace quiv
