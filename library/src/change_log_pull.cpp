// Reading the others' logs into the catalog.
#include <sys/stat.h>

#include <algorithm>
#include <mutex>
#include <unordered_map>
#include <vector>

#include "file_stamp.h"
#include "library/change_log.h"
#include "library/library_scanner.h"
#include "line_reader.h"

namespace brindlehum::ChangeLog {
namespace {

namespace fs = std::filesystem;

constexpr size_t entriesATransaction = 256;

bool isPlain(const std::string& path) {
    if (path.empty() || path.front() == '/' || path.find('\0') != std::string::npos) return false;
    for (size_t start = 0; start <= path.size();) {
        const size_t end = std::min(path.find('/', start), path.size());
        const std::string_view part = std::string_view(path).substr(start, end - start);
        if (part.empty() || part == "." || part == "..") return false;
        start = end + 1;
    }
    return true;
}

// Catalogued paths hold no symbolic links; where one stands now, the path leads to something else than was meant.
bool hasLink(const std::string& root, const std::string& path) {
    for (size_t end = path.find('/'); true; end = path.find('/', end + 1)) {
        struct stat facts {};
        if (::lstat((root + "/" + path.substr(0, end)).c_str(), &facts) == 0 && S_ISLNK(facts.st_mode)) return true;
        if (end == std::string::npos) return false;
    }
}

std::vector<fs::path> logsIn(const fs::path& folder) {
    std::vector<fs::path> logs;
    std::error_code error;
    for (fs::directory_iterator item(folder, error), end; !error && item != end; item.increment(error)) {
        if (item->path().extension() == ".jsonl") logs.push_back(item->path());
    }
    std::ranges::sort(logs);
    return logs;
}

// The rows that some entries change, until they are written together.
class Batch {
public:
    Batch(std::string root, Catalog& catalog) : root_(std::move(root)), catalog_(catalog) {}

    void add(const Entry& entry) {
        if (!isPlain(entry.path) || hasLink(root_, entry.path)) return;
        const std::string path = root_ + "/" + entry.path;
        auto changed = metas_.find(path);
        if (changed == metas_.end()) {
            auto row = catalog_.row(path);
            if (!row) return;
            changed = metas_.emplace(path, std::move(row->meta)).first;
        }
        entry.changes.apply(changed->second);
        ++entries_;
    }
    bool isFull() const { return metas_.size() >= entriesATransaction; }

    // Throws when the database does; nothing is written then. Gives the number of entries.
    int write() {
        struct Update {
            const std::string* path;
            Catalog::Stamp stamp;
            std::optional<AudioFileInfo> info;
            const SoundMeta* meta;
        };
        std::vector<Update> updates;
        for (const auto& [path, meta] : metas_) {
            Update update{&path, {}, std::nullopt, &meta};
            struct stat facts {};
            if (::lstat(path.c_str(), &facts) == 0) update.stamp = stampOf(facts);
            try {
                update.info = AudioFileInfo::load(path);
            } catch (const std::exception&) {
                // As the scanner has it.
            }
            updates.push_back(std::move(update));
        }
        if (!updates.empty()) {
            catalog_.write([&] {
                for (const Update& u : updates) catalog_.upsert(*u.path, root_, u.stamp, u.info, *u.meta);
            });
        }
        metas_.clear();
        return std::exchange(entries_, 0);
    }

private:
    const std::string root_;
    Catalog& catalog_;
    std::unordered_map<std::string, SoundMeta> metas_;
    int entries_ = 0;
};

int pullLog(const std::string& root, Catalog& catalog, const fs::path& log, const std::stop_token& stop) {
    const int64_t before = catalog.logOffset(log.string());
    LineReader lines(log, before);
    Batch batch(root, catalog);
    int applied = 0;
    int64_t written = before;
    // The position follows each transaction: a stop in between repeats at most one batch.
    const auto write = [&] {
        applied += batch.write();
        if (lines.offset() != written) catalog.setLogOffset(log.string(), lines.offset());
        written = lines.offset();
    };
    while (const auto line = lines.next()) {
        if (stop.stop_requested()) break;
        if (const auto entry = Entry::decode(*line)) batch.add(*entry);
        if (batch.isFull()) write();
    }
    write();
    return applied;
}

}  // namespace

int pull(const fs::path& root, Catalog& catalog, const std::string& self, const std::stop_token& stop) {
    static std::mutex oneAtATime;  // two at once would both apply what is new
    const std::lock_guard guard(oneAtATime);
    const std::string rootPath = LibraryScanner::canonical(root);
    const fs::path own = logFile(root, self);
    int applied = 0;
    for (const fs::path& log : logsIn(own.parent_path())) {
        if (log == own || stop.stop_requested()) continue;
        try {
            applied += pullLog(rootPath, catalog, log, stop);
        } catch (const std::exception&) {
            // Tried again at the next pull, from where it was.
        }
    }
    return applied;
}

}  // namespace brindlehum::ChangeLog
