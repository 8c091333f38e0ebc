// FolderListing: the folders and audio files in a folder, as one value made off the main thread.
#pragma once

#include <QString>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace brindlehum {

struct FolderEntry {
    QString name;
    QString kind;  // "Folder", or the file's extension in capitals
    bool isFolder = false;
    int64_t bytes = 0;     // 0 for a folder
    int64_t modified = 0;  // seconds since 1970
    int order = 0;         // place among the names of the listing, numbers in them by value
    bool operator==(const FolderEntry&) const = default;
};

struct FolderListing {
    std::filesystem::path folder;
    std::vector<FolderEntry> entries;  // by name, folders first
    std::string error;                 // why the folder can't be read; empty when it can
};

// Blocking I/O; any thread. Hidden entries are left out, links count as what they lead to, and an entry that
// vanishes meanwhile is left out too.
FolderListing listFolder(const std::filesystem::path& folder);

}  // namespace brindlehum
