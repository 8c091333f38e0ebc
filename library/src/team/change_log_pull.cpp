// Merges the logs into the catalog's edits.
#include <sys/stat.h>

#include <algorithm>
#include <map>
#include <unordered_map>
#include <vector>

#include "base/error.h"
#include "base/path.h"
#include "base/text.h"
#include "catalog/file_stamp.h"
#include "library/catalog/catalog_edits.h"
#include "library/meta/meta_io.h"
#include "library/team/change_log.h"
#include "library/team/log_owner.h"
#include "scan/slice_reader.h"
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
    for (size_t end = path.find('/', root.size() + 1); true; end = path.find('/', end + 1)) {
        struct stat facts {};
        if (::lstat(path.substr(0, end).c_str(), &facts) == 0 && S_ISLNK(facts.st_mode)) { return true; }
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

// Older versions didn't say where they put the words: into the file, if it holds a record now.
bool isHeldByFile(const std::string& path) {
    if (!MetaIO::canWrite(path)) { return false; }
    try {
        return MetaIO::readRecord(path).has_value();
    } catch (const std::exception&) { return true; }
}

std::vector<FieldEdit> fieldsOf(const Entry& entry, const std::string& writer, bool embedded) {
    std::vector<FieldEdit> edits;
    const auto add = [&](const std::string_view field, std::string value) {
        edits.push_back({std::string(field), std::move(value), entry.time, writer, embedded});
    };
    for (const auto& [field, value] : entry.changes.fields) {
        if (SoundMeta::tag(field) != nullptr) { add(field, value); }
    }
    if (entry.changes.rating) { add(FieldEdit::rating, std::to_string(*entry.changes.rating)); }
    return edits;
}

// The position in a log, and the entries read since the position was last stored.
class Batch {
public:
    Batch(std::string root, Catalog& catalog, const fs::path& log)
        : root_(std::move(root)),
          catalog_(catalog),
          edits_(catalog),
          log_(log.string()),
          writer_(log.stem().string()),
          offset_(catalog.logOffset(log_)) {}

    int64_t offset() const { return offset_; }
    bool isFull() const { return entries_.size() >= entriesATransaction; }

    void add(Entry entry) {
        if (!isPlain(entry.path) || (entry.from && !isPlain(*entry.from))) { return; }
        // Looks at the disk now, before the transaction.
        const std::string path = pathOf(entry.path);
        look(path);
        if (!entry.embedded) { entry.embedded = !entry.changes.isEmpty() && isHeldByFile(path); }
        entries_.push_back(std::move(entry));
    }

    // Writes entries and position in one transaction, so that no entry is ever passed over. Returns the number that
    // changed something; throws when another process has moved the position, or the database fails.
    int write(int64_t readTo) {
        int applied = 0;
        if (readTo == offset_) { return applied; }
        std::vector<std::string> unread;
        catalog_.write([&] {
            if (catalog_.logOffset(log_) != offset_) { throw Error(log_ + " is being read by another process"); }
            for (const Entry& entry : entries_) { applied += merge(entry) ? 1 : 0; }
            for (const auto& [path, touch] : touched_) { refresh(path, touch, unread); }
            catalog_.storeLogOffset(log_, readTo);
        });
        offset_ = readTo;
        entries_.clear();
        touched_.clear();
        files_.clear();
        for (const std::string& path : unread) { read(path); }
        files_.clear();
        return applied;
    }

private:
    // What the entries changed about the words of a file.
    struct Touch {
        bool words = false;  // some that the file doesn't hold
        bool freed = false;  // some that the file holds again, or that were another file's
    };

    std::string pathOf(const std::string& relative) const { return root_ + (root_ == "/" ? "" : "/") + relative; }

    // None when there is no such file.
    std::optional<Catalog::Stamp> look(const std::string& path) {
        const auto [file, isNew] = files_.try_emplace(path);
        struct stat facts {};
        if (isNew && !hasLink(root_, path) && ::lstat(path.c_str(), &facts) == 0 && S_ISREG(facts.st_mode)) {
            file->second = stampOf(facts);
        }
        return file->second;
    }

    bool merge(const Entry& entry) {
        const auto exists = [this](const std::string& path) { return look(path).has_value(); };
        const std::string path = pathOf(entry.path);
        if (entry.from) {
            for (const auto& each : edits_.rename({pathOf(*entry.from), path, entry.time}, root_, exists)) {
                touched_[each].freed = true;
            }
        }
        return mergeFields(edits_.current(path, entry.time, exists), entry);
    }

    bool mergeFields(const std::string& path, const Entry& entry) {
        bool changed = false;
        const auto before = edits_.of(path);
        for (const FieldEdit& edit : fieldsOf(entry, writer_, *entry.embedded)) {
            if (!edits_.merge(path, root_, edit)) { continue; }
            changed = true;
            Touch& touch = touched_[path];
            const auto old = std::ranges::find(before, edit.field, &FieldEdit::field);
            touch.words = touch.words || !edit.embedded;
            touch.freed = touch.freed || (edit.embedded && old != before.end() && !old->embedded);
        }
        return changed;
    }

    // Inside the transaction. A row keeps the stamp of its file only if it has all that the file holds.
    void refresh(const std::string& path, const Touch& touch, std::vector<std::string>& unread) {
        const auto row = catalog_.stamp(path);
        const auto file = look(path);
        if (!row || !file) { return; }
        if (touch.freed || !row->matches(*file)) {
            catalog_.markUnread(path);
            unread.push_back(path);
        } else if (touch.words) {
            catalog_.refreshWords(path);
        }
    }

    void read(const std::string& path) {
        const auto stamp = look(path);
        if (!stamp) { return; }
        const ReadFile file = readSoundFile({path, *stamp});
        catalog_.write([&] {
            if (const auto row = catalog_.row(path)) { catalog_.upsert(path, row->root, *stamp, file.info, file.meta); }
        });
    }

    const std::string root_;
    Catalog& catalog_;
    CatalogEdits edits_;
    const std::string log_;
    const std::string writer_;
    int64_t offset_;  // as stored in the catalog
    std::vector<Entry> entries_;
    std::map<std::string, Touch> touched_;
    std::unordered_map<std::string, std::optional<Catalog::Stamp>> files_;
};

int pullLog(const std::string& root, Catalog& catalog, const fs::path& log, const std::stop_token& stop) {
    int applied = 0;
    try {
        Batch batch(root, catalog, log);
        LineReader lines(log, batch.offset());
        while (const auto line = lines.next()) {
            if (auto entry = Entry::decode(*line)) { batch.add(std::move(*entry)); }
            if (batch.isFull()) { applied += batch.write(lines.offset()); }
            if (stop.stop_requested()) { break; }
        }
        applied += batch.write(lines.offset());
    } catch (const std::exception&) {
        // The next pull tries again from the stored position.
    }
    return applied;
}

}  // namespace

int pull(const fs::path& root, Catalog& catalog, const std::string& self, const std::stop_token& stop) {
    const std::string rootPath = canonicalPath(root);
    const fs::path own = logFile(root, self);
    send(root, catalog, self);
    int applied = 0;
    for (const fs::path& log : logsIn(own.parent_path())) {
        if (stop.stop_requested()) { break; }
        const int changes = pullLog(rootPath, catalog, log, stop);
        if (!LogOwner::isOwn(log.stem().string(), own.stem().string())) { applied += changes; }
    }
    return applied;
}

}  // namespace brindlehum::ChangeLog
