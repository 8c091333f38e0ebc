// MetadataEdits: carries out every metadata edit and rename, and reads the metadata for the inspector.
#pragma once

#include <QObject>
#include <atomic>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "library/catalog/catalog.h"
#include "library/meta/metadata_changes.h"
#include "library/model/real_paths.h"
#include "library/model/ucs_rename.h"
#include "platform/background.h"
#include "settings/settings_store.h"

namespace brindlehum {

// Main thread. Writes files, catalog and log in the background; said() announces the result in a line of text.
class MetadataEdits : public QObject {
    Q_OBJECT
public:
    using Paths = std::vector<std::filesystem::path>;
    struct Move {
        std::filesystem::path from;
        std::filesystem::path to;
    };
    using Moves = std::vector<Move>;

    // `edits` is the queue for our edits and for the team's, so that neither overwrites what the other has just
    // written. It, `catalog` and `realPaths` must outlive this object.
    MetadataEdits(const SettingsStore& settings, MainLoop& loop, Catalog* catalog, RealPaths& realPaths,
                  Background& edits);

    // For all edits that haven't begun. Any thread.
    void use(Catalog& catalog) { catalog_ = &catalog; }

    // A file that couldn't be written, and why.
    struct Failure {
        std::filesystem::path file;
        std::string reason;  // one line, without the file's name
    };
    using Failures = std::vector<Failure>;
    // `ended`, if any, gets the files that weren't saved, in their order; those are as they were before.
    void save(const MetadataChanges& changes, const Paths& files,
              const std::function<void(const Failures&)>& ended = {});
    // Renames catalogued files by their metadata; does nothing without a catalog.
    void renameToUCS(const Paths& files);
    // What that would do with each file, once the edits before it are done. Without a catalog there is no such file.
    void previewUCS(const Paths& files, const std::function<void(const UCSRenames&)>& shown);
    // Renames as shown, and skips files that are gone since or whose new names have been taken.
    void rename(const UCSRenames& shown);
    // Undoes the last rename, for files that still exist and whose old names are still free.
    bool canUndoRename() const { return !lastRenames_.empty(); }
    void undoRename();
    // Reads files' metadata for the inspector and calls `done` with one record per file. A newer call overtakes a
    // running one, whose `done` is then never called.
    void read(const Paths& files, const std::function<void(const std::vector<SoundMeta>&)>& done);
    // Before the process ends: waits up to `patience` seconds for running edits. False when some aren't done by then;
    // the files of those are whole, too.
    bool finish(double patience);
    bool isReading() const { return reads_.pending() > 0; }  // also true for overtaken reads

Q_SIGNALS:
    void renamed(const brindlehum::MetadataEdits::Moves& moves);  // at least one
    void catalogChanged();
    void said(const std::string& message);

private:
    void carryOut(std::function<Moves()> plan, bool undoing);

    const SettingsStore& settings_;
    std::atomic<Catalog*> catalog_;
    RealPaths& realPaths_;
    Background& edits_;
    Moves lastRenames_;
    Background::Line newestRead_;
    Background reads_;
};

}  // namespace brindlehum
