// escape_attempts confined|free FILE: tries what code that took over a helper program would, on
// this file and on the process that started it, and prints a line for everything that was not
// refused. `free` shows that the attempts are real.
#include "confined/confinement.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sched.h>
#include <string>
#include <sys/mman.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

std::string report;

// The result of a system call that would do harm.
void attempt(const char* what, long result) {
    const bool isRefused = result == -1 && errno == EPERM;
    if (!isRefused)
        report += std::string(what) + '\n';
}

// Of a call that returns in the new process too.
void attemptFork(const char* what, long result) {
    if (result == 0)
        _exit(0);
    attempt(what, result);
}

void attemptFiles(const char* file, int descriptor, const char* parentMemory) {
    attempt("open", open("/etc/passwd", O_RDONLY));
    attempt("openat", syscall(SYS_openat, AT_FDCWD, parentMemory, O_RDONLY));
    attempt("create", open((std::string(file) + ".new").c_str(), O_CREAT | O_WRONLY, 0600));
    attempt("ftruncate", ftruncate(descriptor, 1));
    attempt("truncate", truncate(file, 1));
    attempt("rename", rename(file, (std::string(file) + ".moved").c_str()));
    attempt("unlink", unlink(file));
}

void attemptSockets(int descriptor) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    attempt("socket", socket(AF_INET, SOCK_STREAM, 0));
    attempt("local socket", socket(AF_UNIX, SOCK_STREAM, 0));
    attempt("connect", connect(descriptor, reinterpret_cast<sockaddr*>(&address), sizeof address));
    attempt("dup", dup(descriptor));
}

void attemptParent(pid_t parent) {
    char byte = 0;
    iovec here{&byte, 1};
    iovec there{&report, 1};
    rlimit limits{};
    attempt("process_vm_readv", process_vm_readv(parent, &here, 1, &there, 1, 0));
    attempt("process_vm_writev", process_vm_writev(parent, &here, 1, &there, 1, 0));
    attempt("ptrace", ptrace(PTRACE_SEIZE, parent, nullptr, nullptr));
    attempt("kill", kill(parent, 0));
    attempt("tgkill", syscall(SYS_tgkill, parent, parent, 0));
    attempt("prlimit", prlimit(parent, RLIMIT_NOFILE, nullptr, &limits));
    attempt("pidfd_open", syscall(SYS_pidfd_open, parent, 0));
}

void attemptProcesses() {
    attemptFork("fork", syscall(SYS_fork));
    attemptFork("vfork", vfork());
    attemptFork("clone", syscall(SYS_clone, SIGCHLD, nullptr, nullptr, nullptr, nullptr));
}

void attemptOwnProcess() {
    char* arguments[] = {nullptr};
    attempt("execve", execve("/bin/true", arguments, arguments));
    attempt("thread", syscall(SYS_clone, CLONE_VM | CLONE_SIGHAND | CLONE_THREAD, nullptr, nullptr,
                              nullptr, nullptr));
    attempt("unshare", unshare(CLONE_NEWUSER));
    void* memory = mmap(nullptr, 4096, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    attempt("code", mprotect(memory, 4096, PROT_READ | PROT_EXEC));
}

// Reading nothing succeeds on whatever is open.
void lookForDescriptors(int own) {
    for (int descriptor = STDERR_FILENO + 1; descriptor < 1024; ++descriptor) {
        char byte = 0;
        if (descriptor != own && (read(descriptor, &byte, 0) == 0 || errno != EBADF))
            report += "descriptor\n";
    }
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3)
        return 1;
    const bool isConfined = std::strcmp(argv[1], "confined") == 0;
    if (isConfined) {
        quiv::closeInheritedDescriptors();
        quiv::limitThisProcess(
            {.addressSpace = std::size_t{256} << 20, .processorSeconds = 2, .niceness = 10});
    }
    const int file = open(argv[2], O_RDWR);
    const pid_t parent = getppid();
    const std::string parentMemory = "/proc/" + std::to_string(parent) + "/mem";
    if (isConfined)
        quiv::forbidSystemCalls();
    lookForDescriptors(file);
    attemptFiles(argv[2], file, parentMemory.c_str());
    attemptSockets(file);
    attemptParent(parent);
    attemptProcesses();
    if (isConfined)
        attemptOwnProcess();
    std::fputs(report.c_str(), stderr);
    return 0;
}
