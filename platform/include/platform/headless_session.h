// HeadlessSession: a session without a desktop, which ignores every request.
#pragma once

#include "platform/session.h"

namespace brindlehum {

class HeadlessSession : public Session {
public:
    FileManager& fileManager() override { return fileManager_; }

private:
    class Nothing : public FileManager {
        void openFolder(const std::filesystem::path&) override {}
        void reveal(const std::vector<std::filesystem::path>&) override {}
    };
    Nothing fileManager_;
};

}  // namespace brindlehum
