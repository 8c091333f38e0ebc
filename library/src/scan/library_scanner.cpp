// LibraryScanner: walks the tree, reads the changed files, and removes the rows of missing ones.
#include "library/scan/library_scanner.h"

#include <mntent.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <unordered_map>
#include <unordered_set>

#include "base/path.h"
#include "base/text.h"
#include "catalog/file_stamp.h"
#include "scan/slice_reader.h"
#include "scan/tree_walk.h"

namespace brindlehum::LibraryScanner {
namespace {

constexpr int64_t filesAReport = 1024;
constexpr size_t removalsAtOnce = 4096;

using Stamps = std::unordered_map<std::string, Catalog::Stamp>;

bool isBelow(const std::string& path, const std::string& folder) {
    return path.size() > folder.size() && path.starts_with(folder) && (path[folder.size()] == '/' || folder == "/");
}

std::string quotedName(const std::string& folder) {
    constexpr size_t longest = 60;  // bytes, for a line of text
    const std::string name = printableName(folder);
    if (name.size() <= longest) { return "“" + (name.empty() ? folder : name) + "”"; }
    return "“" + std::string(cutUtf8(name, longest)) + "…”";
}

std::unordered_set<std::string> mountPointsOf(const std::filesystem::path& table) {
    std::unordered_set<std::string> points;
    FILE* file = ::setmntent(table.c_str(), "re");
    if (file == nullptr) { return points; }
    mntent entry{};
    std::array<char, 4096> buffer{};
    while (::getmntent_r(file, &entry, buffer.data(), buffer.size()) != nullptr) { points.insert(entry.mnt_dir); }
    ::endmntent(file);
    return points;
}

class Scan {
public:
    Scan(const std::filesystem::path& root, Catalog& catalog, const Options& options)
        : root_(canonicalPath(root)), catalog_(catalog), options_(options), rows_(catalog.stamps(root_)) {}

    Result run() {
        const TreeWalk walk = find();
        if (options_.stop.stop_requested()) { return ended(Result::Outcome::cancelled); }
        if (const auto reason = unreachable(walk)) {
            result_.message = *reason;
            return ended(Result::Outcome::unreachable);
        }
        tellUnread(walk.unread);
        readChanged();
        if (!options_.stop.stop_requested() && !isLocked_) { removeVanished(); }
        if (!options_.stop.stop_requested() && !isLocked_) { catalog_.settle(); }
        return ended(options_.stop.stop_requested() ? Result::Outcome::cancelled : Result::Outcome::complete);
    }

private:
    Result ended(Result::Outcome outcome) {
        result_.outcome = outcome;
        result_.found = progress_.found;
        return result_;
    }

    void report() const {
        if (options_.progress) { options_.progress(progress_); }
    }

    // Afterwards rows_ has only the rows of files that weren't found.
    TreeWalk find() {
        std::vector<std::string> others;
        for (const std::string& other : options_.otherRoots) {
            if (isBelow(other, root_)) { others.push_back(other); }
        }
        report();
        TreeWalk walk =
            walkTree(root_, others, options_.stop, [this](const std::string& path, const Catalog::Stamp& stamp) {
                ++progress_.found;
                const auto row = rows_.find(path);
                const bool unchanged = row != rows_.end() && row->second.matches(stamp);
                if (row != rows_.end()) { rows_.erase(row); }
                if (unchanged) {
                    ++progress_.done;
                } else {
                    work_.push_back({path, stamp});
                }
                if (progress_.found % filesAReport == 0) { report(); }
            });
        // Keep rows that belong to another root by now.
        leftAlone_.insert(others.begin(), others.end());
        for (const TreeWalk::Unread& unread : walk.unread) { unread_.insert(unread.path); }
        if (rows_.empty() || walk.empty.empty()) { return walk; }
        const auto mountPoints = mountPointsOf(options_.mountTable);
        for (const std::string& folder : walk.empty) {
            if (mountPoints.contains(folder)) { unread_.insert(folder); }
        }
        return walk;
    }

    // The reason to keep all rows of this root; none when they may be removed.
    std::optional<std::string> unreachable(const TreeWalk& walk) const {
        const std::string name = quotedName(root_);
        if (walk.openError != 0) {
            return name + " can't be reached (" + std::strerror(walk.openError) + "); what is known of it is kept";
        }
        if (walk.exchanged) { return name + " went away during the scan; what is known of it is kept"; }
        // No file was seen, so rows_ still holds all rows.
        if (!walk.anythingThere && !rows_.empty()) {
            return name + " is empty, as if its volume weren't there; what is known of it is kept";
        }
        return std::nullopt;
    }

    void tellUnread(const std::vector<TreeWalk::Unread>& unread) {
        result_.unread = int64_t(unread.size());
        if (unread.empty()) { return; }
        constexpr size_t maxNames = 3;
        std::string names;
        for (size_t i = 0; i < std::min(unread.size(), maxNames); ++i) {
            names += (i == 0 ? "" : ", ") + quotedName(unread[i].path);
        }
        result_.message = "Couldn't read " + std::to_string(unread.size()) +
                          (unread.size() == 1 ? " folder in " : " folders in ") + quotedName(root_) + ": " + names +
                          (unread.size() > maxNames ? " and others" : "") + " (" + std::strerror(unread[0].error) +
                          "); what is known of them is kept";
    }

    void readChanged() {
        progress_.phase = Progress::Phase::reading;
        report();
        SliceReader reader(std::move(work_), batchFiles, options_.stop);
        while (true) {
            const int64_t before = progress_.done;
            const auto slice = reader.next([&](size_t read) {
                progress_.done = before + int64_t(read);
                report();
            });
            if (slice.empty()) { break; }
            write(slice);
            if (isLocked_) { break; }
            progress_.done = before + int64_t(slice.size());
            report();
        }
    }

    void write(const std::vector<ReadFile>& slice) {
        int64_t written = 0;
        try {
            catalog_.write([&] {
                for (const ReadFile& read : slice) { written += upsert(read) ? 1 : 0; }
            });
            result_.read += written;
        } catch (const std::exception& error) {
            // The next scan retries these files, since their stamps still don't match.
            tellWriteFailure(error);
        }
    }

    void tellWriteFailure(const std::exception& error) {
        result_.writeFailed = true;
        // Each further write would wait as long again.
        isLocked_ = dynamic_cast<const CatalogLocked*>(&error) != nullptr;
        result_.message = std::string("The library catalog can't be written: ") + error.what();
    }

    // Checks again: an edit may have changed the file, its row or both since the reading; edits write the row last.
    bool upsert(const ReadFile& read) {
        const std::string& path = read.file.path;
        struct stat facts {};
        const bool looked = ::lstat(path.c_str(), &facts) == 0;
        if (!looked && (errno == ENOENT || errno == ENOTDIR)) { return false; }
        // The walk also finds files whose path is too long to open; keep the walk's stamp for them.
        const Catalog::Stamp now = looked ? stampOf(facts) : read.file.stamp;
        if (const auto stamp = catalog_.stamp(path); stamp && stamp->matches(now)) {
            // The file is unchanged; if its row belongs to a root inside or around this one, move the row to this root.
            const auto row = catalog_.row(path);
            if (!row || row->root == root_) { return false; }
            catalog_.upsert(path, root_, now, read.info, row->meta);
        } else if (now.matches(read.file.stamp)) {
            catalog_.upsert(path, root_, now, read.info, read.meta);
        } else {
            const ReadFile again = readSoundFile({path, now});
            catalog_.upsert(path, root_, now, again.info, again.meta);
        }
        return true;
    }

    void removeVanished() {
        std::vector<std::string> vanished;
        int64_t unseen = 0;
        for (const auto& [path, stamp] : rows_) {
            if (isPartOf(path, leftAlone_)) { continue; }
            if (isPartOf(path, unread_)) {
                ++unseen;
            } else {
                vanished.push_back(path);
            }
        }
        if (unseen > 0 && !result_.message) {
            result_.message =
                "Parts of " + quotedName(root_) + " aren't there to be read; what is known of them is kept";
        }
        progress_.phase = Progress::Phase::removing;
        report();
        for (size_t first = 0; first < vanished.size() && !options_.stop.stop_requested() && !isLocked_;
             first += removalsAtOnce) {
            const size_t end = std::min(first + removalsAtOnce, vanished.size());
            try {
                catalog_.write([&] {
                    for (size_t i = first; i < end; ++i) { catalog_.remove(vanished[i]); }
                });
                result_.removed += int64_t(end - first);
            } catch (const std::exception& error) {
                // The next scan finds the same files missing again.
                tellWriteFailure(error);
            }
        }
    }

    // True when `places` contains the path or a folder above it.
    static bool isPartOf(const std::string& path, const std::unordered_set<std::string>& places) {
        if (places.empty()) { return false; }
        for (size_t end = path.size(); end != 0 && end != std::string::npos; end = path.rfind('/', end - 1)) {
            if (places.contains(path.substr(0, end))) { return true; }
        }
        return false;
    }

    const std::string root_;
    Catalog& catalog_;
    const Options& options_;
    Stamps rows_;  // after the walk: rows of files that weren't found
    std::unordered_set<std::string> leftAlone_;
    std::unordered_set<std::string> unread_;
    std::vector<FoundFile> work_;
    bool isLocked_ = false;  // another program doesn't let go of the catalog
    Progress progress_;
    Result result_;
};

}  // namespace

Result scan(const std::filesystem::path& root, Catalog& catalog, const Options& options) {
    return Scan(root, catalog, options).run();
}

}  // namespace brindlehum::LibraryScanner
