#include "ui/folder_listing.h"

#include <sys/stat.h>

#include <QCollator>
#include <QLocale>
#include <algorithm>
#include <optional>

#include "audio/audio_file_info.h"
#include "ui/file_drag.h"

namespace brindlehum {
namespace {

namespace fs = std::filesystem;

std::optional<FolderEntry> entryOf(const fs::path& path) {
    struct stat facts {};
    if (::stat(path.c_str(), &facts) != 0) return std::nullopt;
    FolderEntry entry;
    entry.isFolder = S_ISDIR(facts.st_mode);
    if (!entry.isFolder && !(S_ISREG(facts.st_mode) && AudioFileInfo::isAudioPath(path))) return std::nullopt;
    entry.name = FileDrag::toText(path.filename());
    entry.kind = entry.isFolder ? "Folder" : FileDrag::toText(path.extension()).mid(1).toUpper();
    entry.bytes = entry.isFolder ? 0 : facts.st_size;
    entry.modified = facts.st_mtime;
    return entry;
}

void sortByName(std::vector<FolderEntry>& entries) {
    // The C locale would compare bytes, numbers and capitals as they come.
    QCollator collator(QLocale().language() == QLocale::C ? QLocale(QLocale::English) : QLocale());
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    struct Keyed {
        QCollatorSortKey key;
        FolderEntry* entry;
    };
    std::vector<Keyed> keyed;
    keyed.reserve(entries.size());
    for (auto& entry : entries) keyed.push_back({collator.sortKey(entry.name), &entry});
    std::ranges::stable_sort(keyed, [](const Keyed& a, const Keyed& b) {
        if (a.entry->isFolder != b.entry->isFolder) return a.entry->isFolder;
        return a.key < b.key;
    });
    std::vector<FolderEntry> sorted;
    sorted.reserve(entries.size());
    for (const auto& item : keyed) {
        sorted.push_back(std::move(*item.entry));
        sorted.back().order = static_cast<int>(sorted.size()) - 1;
    }
    entries = std::move(sorted);
}

}  // namespace

FolderListing listFolder(const fs::path& folder) {
    FolderListing listing{folder, {}, {}};
    std::error_code error;
    fs::directory_iterator item(folder, error);
    for (; !error && item != fs::directory_iterator(); item.increment(error)) {
        const std::string name = item->path().filename().string();
        if (name.starts_with('.')) continue;
        if (auto entry = entryOf(item->path())) listing.entries.push_back(std::move(*entry));
    }
    if (error) listing.error = error.message();
    sortByName(listing.entries);
    return listing;
}

}  // namespace brindlehum
