#pragma once

#include <stdexcept>

namespace quiv {

// Why there is no picture: half a sentence for the error stream.
class NoPicture : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace quiv
