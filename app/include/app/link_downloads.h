// LinkDownloads: fetches the sound of a web link into the pulls folder, by the user's download tool.
#pragma once

#include <QObject>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>

#include "mix/player/player_message.h"
#include "platform/child_processes.h"
#include "platform/disk_work.h"
#include "settings/settings_store.h"

namespace brindlehum {

// Main thread. Each link has a child of its own; what a failed or cancelled one left in the folder stays there. The
// player's message tells how it goes.
class LinkDownloads : public QObject {
    Q_OBJECT
public:
    // Without `children` no link can be opened. All but `arrived` must outlive this object.
    LinkDownloads(ChildProcesses* children, PlayerMessage& message, const SettingsStore& settings, MainLoop& loop);
    ~LinkDownloads() override;

    // Gets a sound that is in the folder now, and the link that it came from.
    std::function<void(const std::filesystem::path& file, const std::string& link)> arrived;

    // Starts to fetch the sound of a link; says in the message why not.
    void open(const std::string& text);
    // That are being fetched.
    size_t running() const { return jobs_.size(); }
    // Ends all of them.
    void cancel();

Q_SIGNALS:
    void changed();  // running() has

private:
    // What a child needs, looked up in the background.
    struct Place {
        std::filesystem::path tool;
        std::filesystem::path folder;   // the real one
        std::filesystem::path written;  // that the tool is told: the folder, or a link to it
        std::filesystem::path scratch;  // holds that link; empty without one
    };
    struct Job {
        std::string link;
        Place place;
        std::unique_ptr<ChildProcesses::Child> child;  // none before it has its place
    };
    static Place find(const std::string& custom, const std::filesystem::path& folder);
    void start(int id, Place place);
    void ended(int id, const ChildResult& result);
    void end(int id);
    void fail(int id, const std::string& problem);
    void tell();

    ChildProcesses* children_;
    PlayerMessage& message_;
    const SettingsStore& settings_;
    MainLoop& loop_;
    std::map<int, Job> jobs_;  // in the order of their starts
    int nextId_ = 0;
    std::string told_;  // our last message about the running ones
    TimerHandle tick_;
    DiskWork disk_;  // last member, so that its work ends first
};

}  // namespace brindlehum
