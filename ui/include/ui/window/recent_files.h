// RecentFiles: the files that the user opened last, stored from run to run.
#pragma once

#include <filesystem>
#include <vector>

#include "settings/user_defaults.h"

namespace brindlehum {

class RecentFiles {
public:
    static constexpr const char* key = "ui.recentFiles";
    static constexpr size_t maxFiles = 12;

    explicit RecentFiles(UserDefaults& defaults) : defaults_(defaults) {}
    // The latest first. Files that don't exist now are left out.
    std::vector<std::filesystem::path> files() const;
    // Makes it the latest.
    void add(const std::filesystem::path& path);
    void clear();

private:
    UserDefaults& defaults_;
};

}  // namespace brindlehum
