// ScriptedSession: a desktop session that records the requests made to it.
#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/applications.h"
#include "platform/child_processes.h"
#include "platform/file_manager_watch.h"
#include "platform/file_previewer.h"
#include "platform/http_client.h"
#include "platform/key_grab.h"
#include "platform/media_session.h"
#include "platform/secrets.h"
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

// Answers a reading at once, or holds it until `answer` while `holds`.
class ScriptedWatch : public FileManagerWatch {
public:
    void start(Heard made) override { heard = std::move(made); }
    bool isTrusted() const override { return trusted; }
    void allow() override { ++clicks; }
    bool isFront() const override { return front; }
    bool seesWindows() const override { return sees; }
    std::vector<DesktopWindow> windows() const override { return shown; }
    bool isEditing() const override { return editing; }
    bool asksPreviewer() const override { return previews; }
    void readSelection(int limit, std::function<void(const SelectionReading&)> done) override {
        ++readings;
        pending = [this, limit, done = std::move(done)] {
            SelectionReading reading{outcome, selected};
            if (reading.paths.size() > size_t(limit)) { reading.paths.resize(size_t(limit)); }
            done(reading);
        };
        if (!holds) { answer(); }
    }
    void answer() { std::exchange(pending, nullptr)(); }
    void attach() override { ++attachments; }

    Heard heard;
    bool trusted = true;
    bool sees = true;
    bool front = false;
    bool editing = false;
    bool previews = false;
    bool holds = false;
    std::vector<DesktopWindow> shown;
    SelectionReading::Outcome outcome = SelectionReading::Outcome::read;
    std::vector<std::filesystem::path> selected;
    std::function<void()> pending;
    int readings = 0;
    int attachments = 0;
    int clicks = 0;
};

class ScriptedGrab : public KeyGrab {
public:
    bool start(Heard made) override {
        heard = std::move(made);
        started = true;
        return works;
    }
    void setArmed(bool on) override { armed = on; }
    void setSwallows(bool on) override { swallows = on; }
    bool isRefused() const override { return refused; }
    // True if the program in front doesn't get the press.
    bool press(bool isRepeat = false) {
        const bool swallowed = armed && swallows;
        if (armed) { heard.press(isRepeat, swallowed); }
        return swallowed;
    }

    Heard heard;
    bool works = true;
    bool started = false;
    bool armed = false;
    bool swallows = false;
    bool refused = false;
};

class ScriptedPreviewer : public FilePreviewer {
public:
    void start(Heard made) override { heard = std::move(made); }
    void setOffered(bool on) override { offered = on; }
    bool isOwned() const override { return offered && !busy; }

    Heard heard;
    bool offered = false;
    bool busy = false;  // the desktop's own previewer runs
};

// Windows as the test sets them; keys are noted, and arrive as `outcome` says.
class ScriptedApplications : public Applications {
public:
    struct Press {
        uint64_t window = 0;
        Keystroke stroke;
        bool operator==(const Press&) const = default;
    };
    KeyAccess access() const override { return allowed; }
    std::vector<ApplicationWindow> windows() override { return shown; }
    void press(const ApplicationWindow& window, const Keystroke& stroke,
               std::function<void(KeyOutcome)> done) override {
        presses.push_back({window.id, stroke});
        done(outcome);
    }
    void finish() override {}
    KeyAccess allowed = KeyAccess::granted;
    KeyOutcome outcome = KeyOutcome::pressed;
    std::vector<ApplicationWindow> shown;
    std::vector<Press> presses;
};

// Servers that never answer by themselves: the test does.
class ScriptedHttp : public HttpClient {
public:
    std::unique_ptr<Exchange> send(HttpRequest request, std::function<void(HttpAnswer)> answered) override {
        requests.push_back(std::move(request));
        done = std::move(answered);
        return std::make_unique<Exchange>();
    }
    std::vector<HttpRequest> requests;
    std::function<void(HttpAnswer)> done;  // of the last one
};

// A keyring in memory, which answers at once. While it is locked, it refuses all.
class ScriptedSecrets : public Secrets {
public:
    void read(const std::string& name, std::function<void(Reading)> done) override {
        const auto found = kept.find(name);
        done({locked || found == kept.end() ? std::nullopt : std::optional(SecretText(found->second)), problem()});
    }
    void write(const std::string& name, const SecretText& secret,
               std::function<void(const std::string&)> done) override {
        if (!locked) { kept[name] = secret.view(); }
        done(problem());
    }
    void remove(const std::string& name, std::function<void(const std::string&)> done) override {
        if (!locked) { kept.erase(name); }
        done(problem());
    }
    std::string problem() const { return locked ? "It is locked" : ""; }
    std::map<std::string, std::string> kept;
    bool locked = false;
};

// Each part can be taken away, as on a desktop without it.
class ScriptedSession : public Session {
public:
    ScriptedFileManager& fileManager() override { return files; }
    ScriptedChildren* childProcesses() override { return &children; }
    ScriptedMedia* mediaSession() override { return &media; }
    HttpClient* http() override { return &web; }
    Secrets* secrets() override { return hasSecrets ? &keyring : nullptr; }
    FileManagerWatch* fileManagerWatch() override { return hasWatch ? &watch : nullptr; }
    KeyGrab* keyGrab() override { return hasGrab ? &grab : nullptr; }
    FilePreviewer* filePreviewer() override { return hasPreviewer ? &previewer : nullptr; }
    Applications* applications() override { return &apps; }
    ScriptedFileManager files;
    ScriptedApplications apps;
    ScriptedChildren children;
    ScriptedMedia media;
    ScriptedSecrets keyring;
    ScriptedHttp web;
    bool hasSecrets = true;
    ScriptedWatch watch;
    ScriptedGrab grab;
    ScriptedPreviewer previewer;
    bool hasWatch = true;
    bool hasGrab = true;
    bool hasPreviewer = true;
};

}  // namespace brindlehum
