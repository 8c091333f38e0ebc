// ScriptedSession: a desktop session that records the requests made to it.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <vector>

#include "platform/child_processes.h"
#include "platform/media_session.h"
#include "platform/session.h"

namespace brindlehum {

class ScriptedFileManager : public FileManager {
public:
    void openFolder(const std::filesystem::path&) override {}
    void reveal(const std::vector<std::filesystem::path>& items) override { shown = items; }
    std::vector<std::filesystem::path> shown;  // by the last request
};

// Children that never run: the test ends them with what they printed.
class ScriptedChildren : public ChildProcesses {
public:
    std::unique_ptr<Child> run(const ChildCommand& command, std::function<void(const ChildResult&)> ended) override {
        commands.push_back(command);
        done = std::move(ended);
        return std::make_unique<Nothing>();
    }
    std::vector<ChildCommand> commands;
    std::function<void(const ChildResult&)> done;  // of the last one

private:
    struct Nothing : Child {
        int64_t bytesWritten() const override { return 0; }
    };
};

// A desktop that keeps what it is told; the test presses its keys.
class ScriptedMedia : public MediaSession {
public:
    void start(Wishes wanted) override { wishes = std::move(wanted); }
    void show(const MediaStatus& status) override { shown = status; }
    void jumped() override { ++jumps; }
    Wishes wishes;
    MediaStatus shown;
    int jumps = 0;
};

class ScriptedSession : public Session {
public:
    ScriptedFileManager& fileManager() override { return files; }
    ScriptedChildren* childProcesses() override { return &children; }
    ScriptedMedia* mediaSession() override { return &media; }
    ScriptedFileManager files;
    ScriptedChildren children;
    ScriptedMedia media;
};

}  // namespace brindlehum
