// A child process that stops at every system call, so that a test can look, meddle or kill at each of them.
#pragma once

#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <functional>
#include <stdexcept>

namespace brindlehum::test {

// Runs `job` in a child and gives its exit status, or -1 when it was killed. The parent is asked at every entry into
// and return from a system call, by count and number of the call (-1 on the return); false kills the child there.
inline int runTraced(const std::function<int()>& job, const std::function<bool(int count, long call)>& goOn) {
    const pid_t child = fork();
    if (child < 0) { throw std::runtime_error("no child process"); }
    if (child == 0) {
        ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
        raise(SIGSTOP);
        _exit(job());
    }
    int status = 0;
    waitpid(child, &status, 0);
    if (!WIFSTOPPED(status)) { throw std::runtime_error("the child can't be traced"); }
    ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);
    for (int count = 0;;) {
        ptrace(PTRACE_SYSCALL, child, nullptr, nullptr);
        if (waitpid(child, &status, 0) != child || !WIFSTOPPED(status)) { break; }
        if (WSTOPSIG(status) != (SIGTRAP | 0x80)) { continue; }
        __ptrace_syscall_info info{};
        ptrace(PTRACE_GET_SYSCALL_INFO, child, sizeof info, &info);
        const bool entry = info.op == PTRACE_SYSCALL_INFO_ENTRY;
        if (!goOn(count++, entry ? long(info.entry.nr) : -1)) { kill(child, SIGKILL); }
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

}  // namespace brindlehum::test
