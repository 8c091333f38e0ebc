// Applies the others' logs to the catalog.
#include <sys/stat.h>

#include <algorithm>
#include <unordered_map>
#include <vector>

#include "base/error.h"
#include "base/path.h"
#include "base/text.h"
#include "catalog/file_stamp.h"
#include "library/team/change_log.h"
#include "team/line_reader.h"

namespace brindlehum::ChangeLog {
namespace {

namespace fs = std::filesystem;

constexpr size_t entriesATransaction = 256;

// True for a relative path below the root that is spelled as the catalog spells it.
bool isPlain(const std::string& path) {
    const auto isOdd = [](std::string_view part) { return part.empty() || part == "." || part == ".."; };
    return path.find('\0') == std::string::npos && std::ranges::none_of(split(path, "/"), isOdd);
}

// Catalogued paths hold no symbolic links: if one is there now, the path leads to a file that the entry didn't mean.
bool hasLink(const std::string& root, const std::string& path) {
    for (size_t end = path.find('/'); true; end = path.find('/', end + 1)) {
        struct stat facts {};
        if (::lstat((root + "/" + path.substr(0, end)).c_str(), &facts) == 0 && S_ISLNK(facts.st_mode)) { return true; }
        if (end == std::string::npos) { return false; }
    }
}

std::vector<fs::path> logsIn(const fs::path& folder) {
    std::vector<fs::path> logs;
    std::error_code error;
    for (fs::directory_iterator item(folder, error), end; !error && item != end; item.increment(error)) {
        if (item->path().extension() == ".jsonl") { logs.push_back(item->path()); }
    }
    std::ranges::sort(logs);
    return logs;
}

// The position in a log, and the entries read since the position was last stored.
class Batch {
public:
    Batch(std::string root, Catalog& catalog, std::string log)
        : root_(std::move(root)), catalog_(catalog), log_(std::move(log)), offset_(catalog.logOffset(log_)) {}

    int64_t offset() const { return offset_; }
    bool isFull() const { return entries_.size() >= entriesATransaction; }

    void add(Entry entry) {
        if (!isPlain(entry.path) || hasLink(root_, entry.path)) { return; }
        const std::string path = root_ + "/" + entry.path;
        if (!catalog_.row(path)) { return; }
        auto [file, isNew] = files_.try_emplace(path);
        if (isNew) { look(path, file->second); }
        entries_.emplace_back(path, std::move(entry.changes));
    }

    // Writes entries and position in one transaction, so that no entry is ever applied twice. Returns the number
    // applied; throws when another process has moved the position, or the database fails.
    int write(int64_t readTo) {
        int applied = 0;
        if (readTo == offset_) { return applied; }
        catalog_.write([&] {
            if (catalog_.logOffset(log_) != offset_) { throw Error(log_ + " is being read by another process"); }
            std::unordered_map<std::string, Catalog::Row> rows;
            for (const auto& [path, changes] : entries_) {
                auto row = rows.find(path);
                if (row == rows.end()) {
                    auto found = catalog_.row(path);
                    if (!found) { continue; }
                    row = rows.emplace(path, std::move(*found)).first;
                }
                changes.apply(row->second.meta);
                ++applied;
            }
            for (const auto& [path, row] : rows) {
                const File& file = files_.at(path);
                catalog_.upsert(path, row.root, file.stamp, file.info, row.meta);
            }
            catalog_.storeLogOffset(log_, readTo);
        });
        offset_ = readTo;
        entries_.clear();
        files_.clear();
        return applied;
    }

private:
    struct File {
        Catalog::Stamp stamp;
        std::optional<AudioFileInfo> info;
    };

    static void look(const std::string& path, File& file) {
        struct stat facts {};
        if (::lstat(path.c_str(), &facts) == 0) { file.stamp = stampOf(facts); }
        try {
            file.info = AudioFileInfo::load(path);
        } catch (const std::exception&) {
            // The row then has no technical facts, as after a scan.
        }
    }

    const std::string root_;
    Catalog& catalog_;
    const std::string log_;
    int64_t offset_;  // as stored in the catalog
    std::vector<std::pair<std::string, MetadataChanges>> entries_;
    std::unordered_map<std::string, File> files_;
};

void pullLog(const std::string& root, Catalog& catalog, const fs::path& log, const std::stop_token& stop,
             int& applied) {
    Batch batch(root, catalog, log.string());
    LineReader lines(log, batch.offset());
    while (const auto line = lines.next()) {
        if (auto entry = Entry::decode(*line)) { batch.add(std::move(*entry)); }
        if (batch.isFull()) { applied += batch.write(lines.offset()); }
        if (stop.stop_requested()) { break; }
    }
    applied += batch.write(lines.offset());
}

}  // namespace

int pull(const fs::path& root, Catalog& catalog, const std::string& self, const std::stop_token& stop) {
    const std::string rootPath = canonicalPath(root);
    const fs::path own = logFile(root, self);
    int applied = 0;
    for (const fs::path& log : logsIn(own.parent_path())) {
        if (log == own || stop.stop_requested()) { continue; }
        try {
            pullLog(rootPath, catalog, log, stop, applied);
        } catch (const std::exception&) {
            // The next pull tries again from the stored position.
        }
    }
    return applied;
}

}  // namespace brindlehum::ChangeLog
