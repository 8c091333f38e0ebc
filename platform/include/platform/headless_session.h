// HeadlessSession: a session without a desktop, which ignores every request.
#pragma once

#include "platform/qt_child_processes.h"
#include "platform/qt_http_client.h"
#include "platform/session.h"

namespace brindlehum {

class HeadlessSession : public Session {
public:
    FileManager& fileManager() override { return fileManager_; }
    ChildProcesses* childProcesses() override { return &childProcesses_; }
    HttpClient* http() override { return &http_; }

private:
    class Nothing : public FileManager {
        void openFolder(const std::filesystem::path&) override {}
        void reveal(const std::vector<std::filesystem::path>&) override {}
    };
    Nothing fileManager_;
    QtChildProcesses childProcesses_;
    QtHttpClient http_;
};

}  // namespace brindlehum
