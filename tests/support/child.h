// A process of its own for a part of a test.
#pragma once

#include <grp.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <exception>
#include <functional>

namespace brindlehum::test {

// Runs `child` at once; a throw tells of itself and fails.
class Child {
public:
    explicit Child(const std::function<bool()>& child) : id_(::fork()) {
        if (id_ != 0) { return; }
        bool good = false;
        try {
            good = child();
        } catch (const std::exception& error) { std::fprintf(stderr, "in the child: %s\n", error.what()); }
        ::_exit(good ? 0 : 1);
    }
    // Waits for its end; to be asked once.
    bool succeeded() const {
        int status = 0;
        return ::waitpid(id_, &status, 0) == id_ && WIFEXITED(status) && WEXITSTATUS(status) == 0;
    }

private:
    pid_t id_;
};

// Gives up a root's rights, which no file's permissions hold back; false when that fails.
inline bool becomeNobody() {
    constexpr uid_t nobody = 65534;
    return ::geteuid() != 0 || (::setgroups(0, nullptr) == 0 && ::setresgid(nobody, nobody, nobody) == 0 &&
                                ::setresuid(nobody, nobody, nobody) == 0);
}

}  // namespace brindlehum::test
