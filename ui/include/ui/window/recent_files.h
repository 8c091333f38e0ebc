// RecentFiles: the files that the user opened last, stored from run to run.
#pragma once

#include <filesystem>
#include <vector>

#include "platform/disk_work.h"
#include "settings/user_defaults.h"

namespace brindlehum {

class RecentFiles {
public:
    static constexpr const char* key = "ui.recentFiles";
    static constexpr size_t maxFiles = 12;

    RecentFiles(UserDefaults& defaults, DiskWork& disk) : defaults_(defaults), disk_(disk) {}
    // The latest first. Files that don't exist now are left out, unless a disk doesn't answer.
    std::vector<std::filesystem::path> files() const;
    // Makes it the latest.
    void add(const std::filesystem::path& path);
    void clear();

private:
    UserDefaults& defaults_;
    DiskWork& disk_;
};

}  // namespace brindlehum
