// Browser listing: reads a folder and sorts its items with numbers by value.
#include "model/browser_listing.h"

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <memory>

#include "base/path.h"
#include "catalog/file_stamp.h"
#include "platform/natural_order.h"

namespace brindlehum {
namespace {

namespace fs = std::filesystem;

std::vector<BrowserEntry> sortedByName(std::vector<BrowserEntry> entries) {
    const QCollator collator = naturalCollator();
    struct Keyed {
        QCollatorSortKey key;
        size_t index;
    };
    std::vector<Keyed> keyed;
    keyed.reserve(entries.size());
    for (size_t i = 0; i < entries.size(); ++i) {
        const std::string name = entries[i].url.filename().string();
        keyed.push_back({collator.sortKey(QString::fromUtf8(name.data(), qsizetype(name.size()))), i});
    }
    std::ranges::sort(keyed, [&](const Keyed& a, const Keyed& b) {
        const int order = a.key.compare(b.key);
        return order != 0 ? order < 0 : entries[a.index].url < entries[b.index].url;
    });
    std::vector<BrowserEntry> sorted;
    sorted.reserve(entries.size());
    for (const Keyed& item : keyed) { sorted.push_back(std::move(entries[item.index])); }
    return sorted;
}

// Zero if the item is gone.
double modifiedOf(DIR* folder, const dirent& item) {
    struct stat facts {};
    return ::fstatat(::dirfd(folder), item.d_name, &facts, 0) == 0 ? stampOf(facts).mtime : 0;
}

}  // namespace

BrowserListing listForBrowser(const fs::path& folder, Catalog* catalog, const std::stop_token& stop) {
    const std::unique_ptr<DIR, int (*)(DIR*)> open(::opendir(folder.c_str()), &::closedir);
    if (!open) { return {{}, std::error_code(errno, std::generic_category())}; }
    const std::string real = canonicalPath(folder);
    std::vector<BrowserEntry> folders;
    std::vector<BrowserEntry> sounds;
    while (const dirent* item = ::readdir(open.get())) {
        const std::string name = item->d_name;
        if (name.starts_with('.')) { continue; }
        if (stop.stop_requested()) { return {}; }
        bool isFolder = item->d_type == DT_DIR;
        bool isFile = item->d_type == DT_REG;
        const bool isLink =
            item->d_type != DT_REG && item->d_type != DT_DIR;  // or the file system doesn't state the type
        struct stat facts {};
        if (isLink && ::fstatat(::dirfd(open.get()), item->d_name, &facts, 0) == 0) {
            isFolder = S_ISDIR(facts.st_mode);
            isFile = S_ISREG(facts.st_mode);
        }
        if (isFolder) {
            folders.push_back({folder / name, true, std::nullopt, modifiedOf(open.get(), *item)});
        } else if (isFile && AudioFileInfo::isAudioPath(name)) {
            BrowserEntry entry{folder / name, false, std::nullopt};
            const std::string path = isLink ? canonicalPath(entry.url) : (fs::path(real) / name).string();
            if (catalog != nullptr) { entry.row = catalog->row(path); }
            if (!entry.row) { entry.modified = modifiedOf(open.get(), *item); }
            sounds.push_back(std::move(entry));
        }
    }
    std::vector<BrowserEntry> all = sortedByName(std::move(folders));
    for (BrowserEntry& entry : sortedByName(std::move(sounds))) { all.push_back(std::move(entry)); }
    return {std::move(all), {}};
}

}  // namespace brindlehum
