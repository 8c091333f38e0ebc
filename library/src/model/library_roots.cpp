// LibraryRoots: runs one scan per root at a time, then applies the team's edits in it. Removes a root's rows only after
// a running scan, which still writes rows, has ended.
#include "library/model/library_roots.h"

#include <algorithm>

#include "library/meta/meta_io.h"
#include "library/team/change_log.h"
#include "library/team/metadata_save.h"

namespace brindlehum {
namespace {

// Work that applies the team's edits in these roots; it returns the number applied.
auto pullWork(std::vector<std::string> roots, Catalog* catalog, RealPaths& realPaths) {
    return [roots = std::move(roots), catalog, &realPaths](const Background::Task& task) {
        int applied = 0;
        for (const std::string& root : realPaths.of(roots)) {
            try {
                applied += ChangeLog::pull(root, *catalog, ChangeLog::owner(), task.token());
            } catch (const std::exception&) {
                // The next pull continues where this one stopped.
            }
        }
        return applied;
    };
}

// Compares what is shown with what the files hold. Says yes, too, if there are too many files to compare.
bool holdsOwnWords(Catalog& catalog, const std::string& root, const std::stop_token& stop) {
    constexpr int maxCompared = 2000;  // about a second
    int compared = 0;
    for (const auto& [path, stamp] : catalog.stamps(root)) {
        if (MetaIO::canWrite(path)) { continue; }
        if (stop.stop_requested() || ++compared > maxCompared) { return true; }
        const auto row = catalog.row(path);
        if (row && row->meta != MetaIO::read(path)) { return true; }
    }
    return false;
}

}  // namespace

LibraryRoots::LibraryRoots(SettingsStore& settings, MainLoop& loop, Catalog* catalog, RealPaths& realPaths,
                           Background& edits)
    : settings_(settings),
      loop_(loop),
      catalog_(catalog),
      realPaths_(realPaths),
      edits_(edits),
      questions_(loop, "Brindlehum.ask"),
      disk_(loop, "Brindlehum.root") {
    connect(&settings, &SettingsStore::changed, this, &LibraryRoots::pullWhileThereAreRoots);
    pullWhileThereAreRoots();
}

LibraryRoots::~LibraryRoots() {
    for (auto& [root, scan] : scans_) { scan.thread.stop(); }
    questions_.stop();
}

std::optional<LibraryScanner::Progress> LibraryRoots::scanProgress(const std::string& root) const {
    const auto scan = scans_.find(root);
    return scan == scans_.end() ? std::nullopt : std::optional(scan->second.progress);
}

void LibraryRoots::add(const std::filesystem::path& folder) {
    std::filesystem::path plain = std::filesystem::absolute(folder).lexically_normal();
    if (!plain.has_filename() && plain.has_relative_path()) { plain = plain.parent_path(); }
    const std::string path = plain.string();
    const auto real = disk_.ask([path, &realPaths = realPaths_] { return realPaths.look(path); });
    if (std::ranges::count(realPaths_.of(settings_.value().libraryRoots), real.value_or(path)) > 0) { return; }
    settings_.change([&](AppSettings& settings) { settings.libraryRoots.push_back(path); });
    rescan(path);
}

void LibraryRoots::askToRemove(const std::string& root) {
    if (!mayRemove) { return remove(root); }
    questions_.run(
        [root, catalog = catalog_, &realPaths = realPaths_](const Background::Task& task) {
            return catalog && holdsOwnWords(*catalog, realPaths.of(root), task.token());
        },
        [this, root](bool losesWords) {
            if (mayRemove(root, losesWords)) { remove(root); }
        });
}

void LibraryRoots::remove(const std::string& root) {
    settings_.change([&](AppSettings& settings) { std::erase(settings.libraryRoots, root); });
    problems_.erase(root);
    scanned_.erase(root);
    if (catalog_ && removing_.insert(root).second) {
        // Wait for a running scan to end first: it would write rows after their removal.
        if (const auto scan = scans_.find(root); scan != scans_.end()) {
            scan->second.thread.stop();
        } else {
            removeRows(root);
        }
    }
    Q_EMIT catalogChanged();
}

void LibraryRoots::removeRows(const std::string& root) {
    edits_.run(
        [root, catalog = catalog_, &realPaths = realPaths_, others = settings_.value().libraryRoots] {
            const std::string real = realPaths.of(root);
            // Keep the rows if another root is the same folder, spelled differently.
            if (std::ranges::count(realPaths.of(others), real) > 0) { return; }
            try {
                catalog->removeRoot(real);
            } catch (const std::exception&) {
                // The rows stay in the database, but a search within roots doesn't find them.
            }
        },
        [this, root] { rowsRemoved(root); });
}

void LibraryRoots::rowsRemoved(const std::string& root) {
    removing_.erase(root);
    // The root may have been added again meanwhile, or another root around it may now own its files: rescan those.
    const std::string real = realPaths_.of(root);
    for (const std::string& other : settings_.value().libraryRoots) {
        if (other == root || !MetadataSave::rootOf(real, {realPaths_.of(other)}).empty()) { rescan(other); }
    }
    Q_EMIT catalogChanged();
}

void LibraryRoots::rescanAll() {
    for (const std::string& root : settings_.value().libraryRoots) { rescan(root); }
}

void LibraryRoots::rescan(const std::string& root) {
    if (!catalog_ || removing_.contains(root) || !indexing_.insert(root).second) { return; }
    Background& thread = scans_.try_emplace(root, loop_).first->second.thread;
    thread.run([this, root, others = settings_.value().libraryRoots](
                   const Background::Task& task) { return scan(root, others, task); },
               [this, root](const LibraryScanner::Result& result) { scanEnded(root, result); });
    Q_EMIT indexingChanged();
}

// On the scan's thread.
LibraryScanner::Result LibraryRoots::scan(const std::string& root, const std::vector<std::string>& others,
                                          const Background::Task& task) {
    const auto report = std::make_shared<ScanReport>();
    const auto progress = [&](const LibraryScanner::Progress& now) {
        {
            const std::lock_guard guard(report->lock);
            report->latest = now;
            if (std::exchange(report->told, true)) { return; }
        }
        task.tell([this, root, report] {
            {
                const std::lock_guard guard(report->lock);
                report->told = false;
                scans_.at(root).progress = report->latest;
            }
            Q_EMIT indexingChanged();
        });
    };
    try {
        const std::string before = realPaths_.of(root);
        const std::string real = realPaths_.look(root);
        if (real != before) {  // a search would look for rows of the old one
            task.tell([this] { Q_EMIT catalogChanged(); });
        }
        return LibraryScanner::scan(real, *catalog_, {progress, task.token(), realPaths_.of(others)});
    } catch (const std::exception& error) {
        LibraryScanner::Result result;
        result.outcome = LibraryScanner::Result::Outcome::unreachable;
        result.message = error.what();
        return result;
    }
}

void LibraryRoots::scanEnded(const std::string& root, const LibraryScanner::Result& result) {
    scans_.erase(root);
    if (removing_.contains(root)) {
        indexing_.erase(root);
        Q_EMIT indexingChanged();
        return removeRows(root);
    }
    if (!result.message) {
        if (const auto before = problems_.extract(root)) { Q_EMIT unsaid(before.mapped()); }
    } else if (problems_.insert_or_assign(root, *result.message).second) {
        Q_EMIT said(*result.message);
    }
    if (result.isWhole()) {
        scanned_.insert(root);
    } else {
        scanned_.erase(root);
    }
    edits_.run(pullWork(pulledAmong({root}), catalog_, realPaths_), [this, root](int) {
        indexing_.erase(root);
        Q_EMIT indexingChanged();
        Q_EMIT catalogChanged();
    });
}

// An edit of a file that isn't catalogued yet can't be shown.
std::vector<std::string> LibraryRoots::pulledAmong(std::vector<std::string> roots) const {
    std::erase_if(roots, [this](const std::string& root) { return !scanned_.contains(root); });
    return roots;
}

void LibraryRoots::pullWhileThereAreRoots() {
    if (settings_.value().libraryRoots.empty()) {
        pullTimer_.reset();
    } else if (!pullTimer_) {
        pullTimer_ = loop_.every(pullSeconds, [this] { pull(); });
    }
}

void LibraryRoots::pull() {
    if (!catalog_ || pulls_.isBusy()) { return; }
    edits_.run(pulls_, pullWork(pulledAmong(settings_.value().libraryRoots), catalog_, realPaths_),
               [this](int applied) {
                   if (applied < 1) { return; }
                   Q_EMIT catalogChanged();
                   Q_EMIT said(std::to_string(applied) + (applied == 1 ? " metadata change" : " metadata changes") +
                               " from your team");
               });
}

}  // namespace brindlehum
