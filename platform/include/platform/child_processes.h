// ChildProcesses: programs run as children, with what they print.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace brindlehum {

struct ChildCommand {
    std::filesystem::path tool;
    std::vector<std::string> arguments;
    std::map<std::string, std::string> environment;  // besides our own, or in place of it
};

struct ChildResult {
    std::string failure;  // why it couldn't be started; empty once it ran
    int status = -1;      // its exit status; -1 when a signal ended it
    std::string out;      // the last MiB that it printed, and that it reported as errors
    std::string errors;
};

// Main thread.
class ChildProcesses {
public:
    // A running child. Its end ends the process and what that has started.
    class Child {
    public:
        virtual ~Child() = default;
        // That it has written so far, to files and pipes; 0 where the system doesn't count them.
        virtual int64_t bytesWritten() const = 0;
    };
    virtual ~ChildProcesses() = default;
    // Starts the child without a shell and returns at once. `done` is called once, later, unless the child's object is
    // destroyed before. A child never outlives this program.
    [[nodiscard]] virtual std::unique_ptr<Child> run(const ChildCommand& command,
                                                     std::function<void(const ChildResult&)> done) = 0;
};

}  // namespace brindlehum
