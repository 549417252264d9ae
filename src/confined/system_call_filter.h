#pragma once

namespace quiv {

// Lets this process make the system calls that decoding needs and no other, for good. Throws
// std::system_error if the kernel has no such filters.
void loadSystemCallFilter();

} // namespace quiv
