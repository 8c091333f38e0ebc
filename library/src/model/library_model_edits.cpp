// The edits of LibraryModel: metadata and names.
#include <sys/stat.h>

#include <QLocale>

#include "catalog/file_stamp.h"
#include "library/model/library_model.h"
#include "library/team/change_log.h"
#include "library/team/metadata_save.h"
#include "model/rename_file.h"

namespace brindlehum {
namespace {

constexpr size_t namesTold = 3;

std::string number(size_t count) {
    return QLocale().toString(static_cast<qulonglong>(count)).toStdString();
}

std::string failureText(const std::vector<std::string>& failed) {
    std::string text = "Couldn't write " + number(failed.size()) + " file(s): ";
    for (size_t i = 0; i < failed.size() && i < namesTold; ++i) { text += (i == 0 ? "" : ", ") + failed[i]; }
    return text;
}

// The row goes along with its file, so that what stands nowhere else survives. A link is only another name.
void moveRow(Catalog& catalog, const Catalog::Row& row, const std::filesystem::path& to) {
    struct stat facts {};
    if (::lstat(to.c_str(), &facts) != 0 || !S_ISREG(facts.st_mode)) { return; }
    const std::string path = LibraryScanner::canonical(to);
    std::optional<AudioFileInfo> info;
    try {
        info = AudioFileInfo::load(path);
    } catch (const std::exception&) {
        // It has no technical facts then.
    }
    try {
        catalog.write([&] {
            catalog.upsert(path, row.root, stampOf(facts), info, row.meta);
            catalog.remove(row.path);
        });
    } catch (const std::exception&) {
        // The scan finds the new name.
    }
}

}  // namespace

void LibraryModel::save(const MetadataChanges& changes, const Paths& urls) {
    if (changes.isEmpty() || urls.empty()) { return; }
    inBackground(
        edits_,
        [this, changes, urls, roots = settings_.value().libraryRoots] {
            const auto realRoots = realPaths_.of(roots);
            const std::string user = ChangeLog::owner();
            std::vector<std::string> failed;
            for (size_t i = 0; i < urls.size(); ++i) {
                if (urls.size() > 1) {
                    loop_.post([self = QPointer(this), i, count = urls.size()] {
                        const std::string text = number(i + 1) + " of " + number(count);
                        if (self) { self->say("Saving metadata to file " + text); }
                    });
                }
                try {
                    MetadataSave::save(urls[i], changes, catalog_.get(), realRoots, user);
                } catch (const std::exception&) { failed.push_back(urls[i].filename().string()); }
            }
            return failed;
        },
        [this, count = urls.size()](const std::vector<std::string>& failed) {
            catalogChanged();
            say(failed.empty() ? "Saved metadata to " + number(count) + " file(s)" : failureText(failed));
        });
}

void LibraryModel::renameToUCS(const Paths& urls) {
    if (!catalog_) { return; }
    rename(
        [this, urls] {
            Moves moves;
            for (const Path& url : urls) {
                const auto row = catalog_->row(LibraryScanner::canonical(url));
                const auto name = row ? row->meta.ucsFileName() : std::nullopt;
                if (name) { moves.push_back({url, url.parent_path() / (*name + url.extension().string())}); }
            }
            return moves;
        },
        false);
}

void LibraryModel::undoRename() {
    Moves back;
    for (const Move& move : lastRenames_) { back.push_back({move.to, move.from}); }
    if (catalog_ && !back.empty()) {
        rename([back] { return back; }, true);
    }
}

// `plan` runs in the background.
void LibraryModel::rename(std::function<Moves()> plan, bool undoing) {
    inBackground(
        edits_,
        [this, plan = std::move(plan)] {
            Moves done;
            for (const Move& move : plan()) {
                const auto row = catalog_->row(LibraryScanner::canonical(move.from));
                if (move.from == move.to || !renameToFreeName(move.from, move.to)) { continue; }
                if (row) { moveRow(*catalog_, *row, move.to); }
                done.push_back(move);
            }
            return done;
        },
        [this, undoing](const Moves& done) {
            lastRenames_ = undoing ? Moves() : done;
            const std::string count = number(done.size());
            say(undoing ? "Gave " + count + " file(s) their old name again" : "Renamed " + count + " file(s)");
            if (!done.empty()) { Q_EMIT renamed(done); }
            rescanAll();
            catalogChanged();
        });
}

bool LibraryModel::finishEdits(double patience) {
    ending_.request_stop();  // of pulls
    return edits_.drainFor(patience);
}

}  // namespace brindlehum
