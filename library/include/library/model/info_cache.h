// InfoCache: the probed facts of files that have no row in the catalog, read one file after another in the background.
#pragma once

#include <QObject>
#include <filesystem>
#include <set>
#include <string>
#include <unordered_map>

#include "audio/probe/audio_file_info.h"
#include "platform/background.h"

namespace brindlehum {

// Main thread.
class InfoCache : public QObject {
    Q_OBJECT
public:
    explicit InfoCache(MainLoop& loop);

    // The record if it is there, else null, and the file is queued for probing: loaded() announces its record. A file
    // that can't be probed is never announced, and isn't remembered as such.
    const AudioFileInfo* info(const std::filesystem::path& path);
    // Drops the queued files that aren't begun: the list that wanted them has gone.
    void forgetWaiting();
    bool isBusy() const { return probes_.pending() > 0; }

Q_SIGNALS:
    void loaded(const std::filesystem::path& path);

private:
    std::unordered_map<std::string, AudioFileInfo> items_;
    std::set<std::string> asked_;
    Background probes_;
};

}  // namespace brindlehum
