// MetadataEdits: the one road of every metadata edit and rename, and the metadata to be edited.
#pragma once

#include <QObject>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "library/catalog/catalog.h"
#include "library/meta/metadata_changes.h"
#include "library/model/real_paths.h"
#include "platform/background.h"
#include "settings/settings_store.h"

namespace brindlehum {

// Main thread. Files, catalog and log are written in the background; said() announces the outcome in a line of text.
class MetadataEdits : public QObject {
    Q_OBJECT
public:
    using Paths = std::vector<std::filesystem::path>;
    struct Move {
        std::filesystem::path from;
        std::filesystem::path to;
    };
    using Moves = std::vector<Move>;

    // `edits` is the queue that edits share with the team's, so that neither overwrites what the other has just
    // written. It, `catalog` and `realPaths` outlive this.
    MetadataEdits(const SettingsStore& settings, MainLoop& loop, Catalog* catalog, RealPaths& realPaths,
                  Background& edits);

    void save(const MetadataChanges& changes, const Paths& files);
    // Names catalogued files by their metadata; does nothing without a catalog.
    void renameToUCS(const Paths& files);
    // Takes the last rename back, as far as the files are still there and the old names still free.
    bool canUndoRename() const { return !lastRenames_.empty(); }
    void undoRename();
    // The metadata of files for the inspector: `done` gets one record a file. A newer call overtakes one that is still
    // under way, whose `done` is then never called.
    void read(const Paths& files, const std::function<void(const std::vector<SoundMeta>&)>& done);
    // Before the process ends: gives edits under way up to `patience` seconds. False when some are still not done;
    // their files are whole all the same.
    bool finish(double patience);
    bool isReading() const { return reads_.pending() > 0; }  // overtaken reads included

Q_SIGNALS:
    void renamed(const brindlehum::MetadataEdits::Moves& moves);  // at least one
    void catalogChanged();
    void said(const std::string& message);

private:
    void rename(std::function<Moves()> plan, bool undoing);

    const SettingsStore& settings_;
    Catalog* catalog_;
    RealPaths& realPaths_;
    Background& edits_;
    Moves lastRenames_;
    Background::Line newestRead_;
    Background reads_;
};

}  // namespace brindlehum
