#pragma once

#include <cstddef>

namespace quiv {

// What a helper program may do and take, whatever is in the file it decodes. The steps are taken in
// this order; each ends the process by an exception when the system refuses.
//
//     closeInheritedDescriptors();
//     limitThisProcess({...});
//     ... open the input ...
//     forbidSystemCalls();
//     ... decode ...

struct ProcessLimits {
    std::size_t addressSpace; // bytes
    unsigned processorSeconds;
    int niceness;
};

// Leaves the standard descriptors alone: what the application has open is not its helpers'.
void closeInheritedDescriptors();

// Low priority, bounded memory and processor time, no files written, no other processes, no core
// dumps with the user's pictures in them; ends with the process that started it.
void limitThisProcess(const ProcessLimits& limits);

// From now on there is memory, the clock, and what is open to be read and written; every other
// system call fails with EPERM. What has to open files, load libraries or start threads comes
// before it.
//
// Sanitizers make calls of their own at any time, also to end the process with a report: built with
// one, a helper has no filter and no limit of descriptors or addresses.
void forbidSystemCalls();

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr bool IsSanitized = true;
#else
inline constexpr bool IsSanitized = false;
#endif

} // namespace quiv
