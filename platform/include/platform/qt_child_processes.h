// QtChildProcesses: children on Qt's event loop.
#pragma once

#include "platform/child_processes.h"

class QObject;

namespace brindlehum {

// Outlives its children; its own end kills those that were asked to end and haven't yet.
class QtChildProcesses : public ChildProcesses {
public:
    QtChildProcesses();
    ~QtChildProcesses() override;
    std::unique_ptr<Child> run(const ChildCommand& command, std::function<void(const ChildResult&)> done) override;

private:
    std::unique_ptr<QObject> ending_;  // parent of the processes that were asked to end
};

}  // namespace brindlehum
