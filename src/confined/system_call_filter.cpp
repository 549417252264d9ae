#include "confined/system_call_filter.h"

#include <cerrno>
#include <memory>
#include <seccomp.h>
#include <sys/mman.h>
#include <system_error>
#include <type_traits>

namespace quiv {

namespace {

struct Release {
    void operator()(void* filter) const { seccomp_release(filter); }
};
using Filter = std::unique_ptr<std::remove_pointer_t<scmp_filter_ctx>, Release>;

constexpr int allowedCalls[] = {
    // memory
    SCMP_SYS(brk), SCMP_SYS(madvise), SCMP_SYS(mremap), SCMP_SYS(munmap),
    // descriptors that are open
    SCMP_SYS(close), SCMP_SYS(lseek), SCMP_SYS(pread64), SCMP_SYS(read), SCMP_SYS(write),
    // clock, locks, random numbers for hash tables
    SCMP_SYS(clock_gettime), SCMP_SYS(clock_nanosleep), SCMP_SYS(futex), SCMP_SYS(getrandom),
    SCMP_SYS(gettimeofday), SCMP_SYS(nanosleep), SCMP_SYS(restart_syscall), SCMP_SYS(sched_yield),
    // this process
    SCMP_SYS(exit), SCMP_SYS(exit_group), SCMP_SYS(getpid), SCMP_SYS(gettid),
    SCMP_SYS(rt_sigprocmask), SCMP_SYS(rt_sigreturn), SCMP_SYS(sched_getaffinity)};

// Nothing that was written may become code.
constexpr int allowedUnlessExecutable[] = {SCMP_SYS(mmap), SCMP_SYS(mprotect)};
constexpr unsigned ProtectionArgument = 2;

void require(int result) {
    if (result < 0)
        throw std::system_error(-result, std::generic_category(), "seccomp");
}

} // namespace

void loadSystemCallFilter() {
    // Refused rather than fatal: libraries try to open what they can do without.
    const Filter filter(seccomp_init(SCMP_ACT_ERRNO(EPERM)));
    if (!filter)
        throw std::bad_alloc();
    for (const int call : allowedCalls)
        require(seccomp_rule_add_array(filter.get(), SCMP_ACT_ALLOW, call, 0, nullptr));
    const scmp_arg_cmp isNotExecutable{ProtectionArgument, SCMP_CMP_MASKED_EQ, PROT_EXEC, 0};
    for (const int call : allowedUnlessExecutable)
        require(seccomp_rule_add_array(filter.get(), SCMP_ACT_ALLOW, call, 1, &isNotExecutable));
    require(seccomp_load(filter.get()));
}

} // namespace quiv
