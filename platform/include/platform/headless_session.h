// HeadlessSession: a session without a desktop, which ignores every request.
#pragma once

#include "platform/qt_child_processes.h"
#include "platform/session.h"

namespace brindlehum {

class HeadlessSession : public Session {
public:
    FileManager& fileManager() override { return fileManager_; }
    ChildProcesses* childProcesses() override { return &childProcesses_; }

private:
    class Nothing : public FileManager {
        void openFolder(const std::filesystem::path&) override {}
        void reveal(const std::vector<std::filesystem::path>&) override {}
    };
    Nothing fileManager_;
    QtChildProcesses childProcesses_;
};

}  // namespace brindlehum
