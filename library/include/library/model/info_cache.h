// InfoCache: the probed properties of files without a row in the catalog, read one after another in the background.
#pragma once

#include <QObject>
#include <filesystem>
#include <set>
#include <string>
#include <unordered_map>

#include "audio/probe/audio_file_info.h"
#include "platform/disk_work.h"

namespace brindlehum {

// Main thread.
class InfoCache : public QObject {
    Q_OBJECT
public:
    explicit InfoCache(MainLoop& loop);

    // Returns the record if it is known. Otherwise returns null and queues the file for probing; loaded() announces the
    // record. A file that can't be probed is never announced, and the failure isn't remembered.
    const AudioFileInfo* info(const std::filesystem::path& path);
    // Takes a record that was read elsewhere, as of a file that has changed since it was probed; loaded() announces it.
    void learn(const AudioFileInfo& info);
    // Drops the queued files that haven't been started, because the list that wanted them is gone.
    void forgetWaiting();
    bool isBusy() const { return probes_.pending() > 0; }

Q_SIGNALS:
    void loaded(const std::filesystem::path& path);

private:
    std::unordered_map<std::string, AudioFileInfo> items_;
    std::set<std::string> asked_;
    DiskWork probes_;
};

}  // namespace brindlehum
