// MetadataEdits: saves and renames one file after another, and lists the ones that failed.
#include "library/model/metadata_edits.h"

#include <sys/stat.h>

#include <QLocale>

#include "base/path.h"
#include "library/team/change_log.h"
#include "library/team/metadata_save.h"
#include "model/rename_file.h"

namespace brindlehum {
namespace {

constexpr size_t maxNames = 3;

std::string number(size_t count) {
    return QLocale().toString(qulonglong(count)).toStdString();
}

// "1 file", "1,204 files"
std::string countOf(size_t count) {
    return number(count) + (count == 1 ? " file" : " files");
}

struct Outcome {
    MetadataEdits::Failures failed;
    size_t beside = 0;    // files that can't hold metadata, so that it's in the catalog
    std::string missing;  // why the catalog or the team's log lacks an edit
};

std::string savedText(size_t count, const Outcome& outcome) {
    std::string text = "Saved metadata to " + countOf(count);
    if (outcome.beside > 0) { text += ", " + number(outcome.beside) + " of them in the catalog only"; }
    return outcome.missing.empty() ? text : text + ", but " + outcome.missing;
}

std::string failureText(const MetadataEdits::Failures& failed) {
    std::string text = "Couldn't write " + countOf(failed.size()) + ": ";
    for (size_t i = 0; i < failed.size() && i < maxNames; ++i) {
        text += (i == 0 ? "" : ", ") + printableName(failed[i].file);
    }
    return text;
}

MetadataEdits::Moves movesOf(const UCSRenames& renames) {
    MetadataEdits::Moves moves;
    for (const UCSRename& rename : renames) {
        if (rename.verdict == UCSRename::Verdict::renames) { moves.push_back({rename.from, rename.to}); }
    }
    return moves;
}

// Moves the row to the file's new path, since only the row holds some of its metadata. A link has no row of its own.
// False when the catalog can't be written.
bool moveRow(Catalog& catalog, const Catalog::Row& row, const std::filesystem::path& to,
             const std::vector<std::string>& roots) {
    struct stat facts {};
    if (::lstat(to.c_str(), &facts) != 0 || !S_ISREG(facts.st_mode)) { return true; }
    try {
        MetadataSave::renamed(row, to, catalog, roots, ChangeLog::owner());
        return true;
    } catch (const std::exception&) { return false; }
}

}  // namespace

MetadataEdits::MetadataEdits(const SettingsStore& settings, MainLoop& loop, Catalog* catalog, RealPaths& realPaths,
                             Background& edits)
    : settings_(settings), catalog_(catalog), realPaths_(realPaths), edits_(edits), reads_(loop, "Brindlehum.meta") {}

void MetadataEdits::save(const MetadataChanges& changes, const Paths& files,
                         const std::function<void(const Failures&)>& ended) {
    if (changes.isEmpty() || files.empty()) { return; }
    const auto work = [this, changes, files, &realPaths = realPaths_,
                       roots = settings_.value().libraryRoots](const Background::Task& task) {
        Catalog* const catalog = catalog_;  // only now: it may have been opened meanwhile
        const auto realRoots = realPaths.of(roots);
        const std::string user = ChangeLog::owner();
        Outcome outcome;
        for (size_t i = 0; i < files.size(); ++i) {
            if (files.size() > 1) {
                const std::string text = number(i + 1) + " of " + number(files.size());
                task.tell([this, text] { Q_EMIT said("Saving metadata to file " + text); });
            }
            try {
                const auto saved = MetadataSave::save(files[i], changes, catalog, realRoots, user);
                outcome.beside += saved.embedded ? 0 : 1;
                for (const auto& lack : {saved.unshared, saved.unindexed}) {
                    if (lack) { outcome.missing = *lack; }
                }
            } catch (const std::exception& error) { outcome.failed.push_back({files[i], reasonOf(files[i], error)}); }
        }
        return outcome;
    };
    edits_.run(work, [this, count = files.size(), ended](const Outcome& outcome) {
        if (ended) { ended(outcome.failed); }
        Q_EMIT catalogChanged();
        Q_EMIT said(outcome.failed.empty() ? savedText(count, outcome) : failureText(outcome.failed));
    });
}

void MetadataEdits::renameToUCS(const Paths& files) {
    if (!catalog_) { return; }
    carryOut([files, catalog = catalog_.load()] { return movesOf(planUCSRenames(files, *catalog)); }, false);
}

void MetadataEdits::previewUCS(const Paths& files, const std::function<void(const UCSRenames&)>& shown) {
    edits_.run(
        [files, catalog = catalog_.load()] {
            if (catalog) { return planUCSRenames(files, *catalog); }
            UCSRenames none;
            for (const auto& file : files) { none.push_back({file, {}, UCSRename::Verdict::notInLibrary}); }
            return none;
        },
        shown);
}

void MetadataEdits::rename(const UCSRenames& shown) {
    if (const Moves moves = movesOf(shown); catalog_ && !moves.empty()) {
        carryOut([moves] { return moves; }, false);
    }
}

void MetadataEdits::undoRename() {
    Moves back;
    for (const Move& move : lastRenames_) { back.push_back({move.to, move.from}); }
    if (catalog_ && !back.empty()) {
        carryOut([back] { return back; }, true);
    }
}

// `plan` runs on the background queue.
void MetadataEdits::carryOut(std::function<Moves()> plan, bool undoing) {
    struct Result {
        Moves done;
        size_t failed = 0;
    };
    edits_.run(
        [plan = std::move(plan), catalog = catalog_.load(), &realPaths = realPaths_,
         roots = settings_.value().libraryRoots](const Background::Task& task) {
            const auto realRoots = realPaths.of(roots);
            // What the team has logged so far goes along, and may decide the names.
            for (const std::string& root : realRoots) {
                ChangeLog::pull(root, *catalog, ChangeLog::owner(), task.token());
            }
            Result result;
            for (const Move& move : plan()) {
                const auto row = catalog->row(canonicalPath(move.from));
                if (!renameToFreeName(move.from, move.to)) {
                    ++result.failed;
                    continue;
                }
                if (row && !moveRow(*catalog, *row, move.to, realRoots) && renameToFreeName(move.to, move.from)) {
                    ++result.failed;
                    continue;
                }
                result.done.push_back(move);
            }
            return result;
        },
        [this, undoing](const Result& result) {
            lastRenames_ = undoing ? Moves() : result.done;
            const std::string count = countOf(result.done.size());
            const std::string failed = result.failed > 0 ? ", " + number(result.failed) + " couldn't be renamed" : "";
            Q_EMIT said((undoing ? "Gave " + count + " the old name again" : "Renamed " + count) + failed);
            if (!result.done.empty()) { Q_EMIT renamed(result.done); }
            Q_EMIT catalogChanged();
        });
}

void MetadataEdits::read(const Paths& files, const std::function<void(const std::vector<SoundMeta>&)>& done) {
    reads_.run(
        newestRead_,
        [files, catalog = catalog_.load()](const Background::Task& task) {
            std::vector<SoundMeta> metas;
            for (const auto& file : files) {
                if (task.isStopped()) { break; }
                metas.push_back(MetadataSave::current(file, catalog));
            }
            return metas;
        },
        done);
}

bool MetadataEdits::finish(double patience) {
    edits_.stop();  // ends pulls early; saves and renames run to their end
    return edits_.drainFor(patience);
}

}  // namespace brindlehum
