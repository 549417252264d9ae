#pragma once

#include <stdexcept>

namespace quiv {

// Why there is no still: half a sentence for the error stream.
class NoStill : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace quiv
