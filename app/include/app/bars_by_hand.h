// BarsByHand: what the user has set about the bars of single pieces, stored from run to run.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "analysis/bars/given_bars.h"
#include "settings/user_defaults.h"

namespace brindlehum {

// Main thread. The latest 500 pieces are remembered, by the absolute path of their file.
class BarsByHand {
public:
    static constexpr const char* key = "analysis.bars";
    static constexpr size_t maxFiles = 500;

    explicit BarsByHand(UserDefaults& defaults);

    GivenBars find(const std::filesystem::path& file) const;
    // Nothing given forgets the file.
    void set(const std::filesystem::path& file, const GivenBars& given);
    void rename(const std::filesystem::path& from, const std::filesystem::path& to);

private:
    struct Entry {
        std::string path;  // as stored
        GivenBars given;
    };
    void load();
    void save();

    UserDefaults& defaults_;
    std::vector<Entry> entries_;  // the latest first
};

}  // namespace brindlehum
