// InfoCache: what probing tells of files that have no row in the catalog, one file after another in the background.
#pragma once

#include <QObject>
#include <atomic>
#include <filesystem>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>

#include "audio/probe/audio_file_info.h"
#include "platform/main_loop.h"
#include "platform/task_queues.h"

namespace brindlehum {

// Main thread.
class InfoCache : public QObject {
    Q_OBJECT
public:
    explicit InfoCache(MainLoop& loop);
    ~InfoCache() override;

    // The record if it is there, else null, and the file is queued for probing: loaded() tells when it has come. A file
    // that can't be probed is never announced, and isn't remembered as such.
    const AudioFileInfo* info(const std::filesystem::path& url);
    // Drops what is queued but not begun: the list that wanted it has gone.
    void forgetWaiting();
    SerialQueue& queue() { return queue_; }  // tests drain it

Q_SIGNALS:
    void loaded(const std::filesystem::path& url);

private:
    void take(const std::string& key, std::optional<AudioFileInfo> info, uint64_t generation);

    MainLoop& loop_;
    std::unordered_map<std::string, AudioFileInfo> items_;
    std::set<std::string> asked_;
    std::shared_ptr<std::atomic<uint64_t>> generation_ = std::make_shared<std::atomic<uint64_t>>(0);
    SerialQueue queue_{"Brindlehum.info"};
};

}  // namespace brindlehum
