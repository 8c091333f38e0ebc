// The roots of LibraryModel: their scans, their removal, and what the team has logged.
#include <algorithm>

#include "library/model/library_model.h"
#include "library/team/change_log.h"
#include "library/team/metadata_save.h"

namespace brindlehum {

// The newest progress of a scan on its way to the main thread: what the main thread doesn't get to see is skipped.
struct LibraryModel::ScanReport {
    std::mutex lock;
    LibraryScanner::Progress latest;
    bool posted = false;
};

std::vector<std::string> LibraryModel::roots() {
    return realPaths_.of(settings_.value().libraryRoots);
}

std::optional<LibraryScanner::Progress> LibraryModel::scanProgress(const std::string& root) const {
    const auto scan = scans_.find(root);
    return scan == scans_.end() ? std::nullopt : std::optional(scan->second.progress);
}

void LibraryModel::addRoot(const Path& url) {
    Path plain = std::filesystem::absolute(url).lexically_normal();
    if (!plain.has_filename() && plain.has_relative_path()) { plain = plain.parent_path(); }
    const std::string path = plain.string();
    realPaths_.forget(path);
    if (std::ranges::count(roots(), realPaths_.of(path)) > 0) { return; }
    settings_.change([&](AppSettings& settings) { settings.libraryRoots.push_back(path); });
    rescan(path);
}

void LibraryModel::removeRoot(const std::string& path) {
    settings_.change([&](AppSettings& settings) { std::erase(settings.libraryRoots, path); });
    rootProblems_.erase(path);
    if (catalog_ && removing_.insert(path).second) {
        // Rows that a running scan still writes must not come after the removal.
        if (const auto scan = scans_.find(path); scan != scans_.end()) {
            scan->second.thread.request_stop();
        } else {
            removeRows(path);
        }
    }
    catalogChanged();
}

void LibraryModel::removeRows(const std::string& root) {
    inBackground(
        edits_,
        [this, root, others = settings_.value().libraryRoots] {
            const std::string real = realPaths_.of(root);
            // A second spelling of the same folder keeps its rows.
            if (std::ranges::count(realPaths_.of(others), real) > 0) { return real; }
            try {
                catalog_->removeRoot(real);
            } catch (const std::exception&) {
                // Its rows stay in the file, but are no part of any search with roots.
            }
            return real;
        },
        [this, root](const std::string&) { rowsRemoved(root); });
}

void LibraryModel::rowsRemoved(const std::string& root) {
    removing_.erase(root);
    // It may have been added again meanwhile; and a root around it has its files now.
    const std::string real = realPaths_.of(root);
    for (const std::string& other : settings_.value().libraryRoots) {
        if (other == root || !MetadataSave::rootOf(real, {realPaths_.of(other)}).empty()) { startScan(other); }
    }
    catalogChanged();
}

void LibraryModel::rescan(const std::string& root) {
    startScan(root);
}

void LibraryModel::rescanAll() {
    for (const std::string& root : settings_.value().libraryRoots) { startScan(root); }
}

void LibraryModel::startScan(const std::string& root) {
    if (!catalog_ || removing_.contains(root) || !indexing_.insert(root).second) { return; }
    ++pending_;
    Scan& scan = scans_[root];
    scan.report = std::make_shared<ScanReport>();
    const QPointer self(this);
    const auto progress = [self, root, report = scan.report, &loop = loop_](const LibraryScanner::Progress& now) {
        {
            const std::lock_guard guard(report->lock);
            report->latest = now;
            if (std::exchange(report->posted, true)) { return; }
        }
        loop.post([self, root, report] {
            std::unique_lock guard(report->lock);
            report->posted = false;
            const LibraryScanner::Progress latest = report->latest;
            guard.unlock();
            if (!self) { return; }
            const auto running = self->scans_.find(root);
            if (running == self->scans_.end() || running->second.report != report) { return; }
            running->second.progress = latest;
            Q_EMIT self->indexingChanged();
        });
    };
    scan.thread = std::jthread([self, root, progress, &loop = loop_, &catalog = *catalog_, &realPaths = realPaths_,
                                others = settings_.value().libraryRoots](const std::stop_token& stop) {
        LibraryScanner::Result result;
        try {
            realPaths.forget(root);
            result = LibraryScanner::scan(realPaths.of(root), catalog, {progress, stop, realPaths.of(others)});
        } catch (const std::exception& error) {
            result.outcome = LibraryScanner::Result::Outcome::unreachable;
            result.message = error.what();
        }
        loop.post([self, root, result] {
            if (self) { self->scanEnded(root, result); }
        });
    });
    Q_EMIT indexingChanged();
}

void LibraryModel::scanEnded(const std::string& root, const LibraryScanner::Result& result) {
    --pending_;
    scans_.erase(root);
    if (removing_.contains(root)) {
        indexing_.erase(root);
        Q_EMIT indexingChanged();
        return removeRows(root);
    }
    if (!result.message) {
        const auto before = rootProblems_.extract(root);
        if (!before.empty() && message_ == before.mapped()) { say({}); }
    } else if (rootProblems_.insert_or_assign(root, *result.message).second) {
        say(*result.message);
    }
    pullThen({root}, [this, root](int) {
        indexing_.erase(root);
        Q_EMIT indexingChanged();
        catalogChanged();
    });
}

void LibraryModel::pull() {
    if (!catalog_ || std::exchange(pulling_, true)) { return; }
    pullThen(settings_.value().libraryRoots, [this](int applied) {
        pulling_ = false;
        if (applied < 1) { return; }
        catalogChanged();
        say(std::to_string(applied) + " metadata changes from your team");
    });
}

void LibraryModel::pullThen(const std::vector<std::string>& roots, std::function<void(int applied)> then) {
    inBackground(
        edits_,
        [this, roots, stop = ending_.get_token()] {
            int applied = 0;
            for (const std::string& root : realPaths_.of(roots)) {
                try {
                    applied += ChangeLog::pull(root, *catalog_, ChangeLog::owner(), stop);
                } catch (const std::exception&) {
                    // The next pull goes on where this one stopped.
                }
            }
            return applied;
        },
        [then = std::move(then)](int applied) { then(applied); });
}

}  // namespace brindlehum
