// PluginList: the effects that are installed, looked for in the background and remembered on the disk.
#pragma once

#include <QObject>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "monitor/inserts/insert.h"
#include "platform/background.h"

namespace brindlehum {

// Main thread.
class PluginList : public QObject {
    Q_OBJECT
public:
    // How the system is asked; both on the queue.
    struct Scanner {
        std::function<std::string()> fingerprint;
        std::function<std::vector<PluginInfo>(const std::stop_token&)> scan;
    };

    explicit PluginList(MainLoop& loop, std::filesystem::path cacheFile = defaultFile(), Scanner scanner = system());

    // As last found, by maker and name; empty before the first refresh().
    const std::vector<PluginInfo>& list() const { return list_; }
    const PluginInfo* find(const std::string& uri) const;
    // Looks for what has been installed or removed. changed() follows if anything has.
    void refresh();
    bool isLooking() const { return looks_.isBusy(); }

    static std::filesystem::path defaultFile();  // in the user's cache folder
    static Scanner system();

Q_SIGNALS:
    void changed();

private:
    const std::filesystem::path cacheFile_;
    const Scanner scanner_;
    std::vector<PluginInfo> list_;
    bool known_ = false;
    Background::Line looks_;
    Background queue_;
};

}  // namespace brindlehum
