// ScriptedSession: a desktop session that records the requests made to it.
#pragma once

#include <filesystem>
#include <vector>

#include "platform/session.h"

namespace brindlehum {

class ScriptedFileManager : public FileManager {
public:
    void openFolder(const std::filesystem::path&) override {}
    void reveal(const std::vector<std::filesystem::path>& items) override { shown = items; }
    std::vector<std::filesystem::path> shown;  // by the last request
};

class ScriptedSession : public Session {
public:
    ScriptedFileManager& fileManager() override { return files; }
    ScriptedFileManager files;
};

}  // namespace brindlehum
