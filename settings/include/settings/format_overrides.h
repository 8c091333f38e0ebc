// FormatOverrides: how the user reads the channels of a file or of a folder's files, stored from run to run.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "audio/speakers/source_format.h"
#include "settings/user_defaults.h"

namespace brindlehum {

// Main thread. A file's own choice goes before its folder's, and a folder's counts for the files with as many channels.
// The latest 500 files and 100 folders are remembered.
class FormatOverrides {
public:
    static constexpr const char* key = "player.formats";
    static constexpr size_t maxFiles = 500;
    static constexpr size_t maxFolders = 100;

    explicit FormatOverrides(UserDefaults& defaults);

    // None: read it as detected.
    std::optional<SourceFormat> find(const std::filesystem::path& file, int channels) const;
    std::optional<SourceFormat> findFolder(const std::filesystem::path& folder, int channels) const;
    // None: read the file as detected, also where its folder has a choice.
    void setFile(const std::filesystem::path& file, int channels, const std::optional<SourceFormat>& format);
    // None forgets the folder's choice for this number of channels.
    void setFolder(const std::filesystem::path& folder, int channels, const std::optional<SourceFormat>& format);
    // From now on the file reads as its folder says.
    void forgetFile(const std::filesystem::path& file);
    void rename(const std::filesystem::path& from, const std::filesystem::path& to);

private:
    struct Entry {
        std::string path;  // as stored
        int channels = 0;
        std::optional<SourceFormat> format;  // none: as detected
    };
    // The latest first.
    using Entries = std::vector<Entry>;
    static const Entry* entry(const Entries& entries, const std::filesystem::path& path, int channels);
    static void put(Entries& entries, Entry entry, size_t most);
    void load();
    void save();

    UserDefaults& defaults_;
    Entries files_;
    Entries folders_;
};

}  // namespace brindlehum
