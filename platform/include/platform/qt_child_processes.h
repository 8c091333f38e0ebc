// QtChildProcesses: children on Qt's event loop.
#pragma once

#include "platform/child_processes.h"

namespace brindlehum {

class QtChildProcesses : public ChildProcesses {
public:
    std::unique_ptr<Child> run(const ChildCommand& command, std::function<void(const ChildResult&)> done) override;
};

}  // namespace brindlehum
