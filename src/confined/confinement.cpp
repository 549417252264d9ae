#include "confined/confinement.h"

#include "confined/system_call_filter.h"

#include <cerrno>
#include <csignal>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <system_error>
#include <unistd.h>

namespace quiv {

namespace {

// The kernel's own header of these does not compile as C++ in every release.
constexpr int DiskPriorityOfProcess = 1;          // IOPRIO_WHO_PROCESS
constexpr int LowestDiskPriority = (2 << 13) | 7; // the last of IOPRIO_CLASS_BE

void require(bool done, const char* what) {
    if (!done)
        throw std::system_error(errno, std::generic_category(), what);
}

void limit(__rlimit_resource resource, rlim_t value) {
    // Never above what was there before, which only a privileged process may do.
    rlimit limits{};
    require(getrlimit(resource, &limits) == 0, "getrlimit");
    if (limits.rlim_max < value)
        value = limits.rlim_max;
    limits = {value, value};
    require(setrlimit(resource, &limits) == 0, "setrlimit");
}

bool isFile(int descriptor) {
    struct stat status {};
    return fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
}

} // namespace

void closeInheritedDescriptors() {
    closefrom(STDERR_FILENO + 1);
}

void limitThisProcess(const ProcessLimits& limits) {
    require(prctl(PR_SET_PDEATHSIG, SIGKILL) == 0, "PR_SET_PDEATHSIG");
    require(prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0, "PR_SET_NO_NEW_PRIVS");
    require(prctl(PR_SET_DUMPABLE, 0) == 0,
            "PR_SET_DUMPABLE"); // crash reporters get nothing either
    limit(RLIMIT_CORE, 0);
    limit(RLIMIT_CPU, limits.processorSeconds);
    // Started by hand, what is written or the reason may go to a file.
    if (!isFile(STDOUT_FILENO) && !isFile(STDERR_FILENO))
        limit(RLIMIT_FSIZE, 0);
    if (!IsSanitized) {
        limit(RLIMIT_NPROC, 0); // root is not held by it, but by the filter
        limit(RLIMIT_AS, limits.addressSpace);
    }
    // Niceties: a system that refuses them changes nothing but the pace.
    setpriority(PRIO_PROCESS, 0, limits.niceness);
    syscall(SYS_ioprio_set, DiskPriorityOfProcess, 0, LowestDiskPriority);
}

void forbidSystemCalls() {
    if (IsSanitized)
        return;
    limit(RLIMIT_NOFILE, 0);
    loadSystemCallFilter();
}

} // namespace quiv
