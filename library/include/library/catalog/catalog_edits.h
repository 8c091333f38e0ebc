// CatalogEdits: the newest edits of a library's files, merged field by field from the logs of all, and the renames.
//
// For a file that can't hold its record, these edits are the record: Catalog::upsert() lays them over what the file
// holds. They don't depend on rows, so that an edit may be known before its file, and survives when the file is away.
#pragma once

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "library/catalog/catalog.h"
#include "library/catalog/field_edit.h"

namespace brindlehum {

class CatalogEdits {
public:
    explicit CatalogEdits(Catalog& catalog);

    // Call these anywhere. All paths are canonical and absolute. Without a database that can be read, there are no
    // edits. `held`, which the file holds, with the newer words over it that the file doesn't hold.
    SoundMeta over(const std::string& path, SoundMeta held) const;
    struct FileEdit {
        std::string path;
        std::vector<FieldEdit> fields;  // at least one; alike in `time` and `embedded`
    };
    struct Rename {
        std::string from;
        std::string to;
        EditTime time;
        bool unsent = false;
    };
    // What our log of this root doesn't have yet, the oldest first.
    struct Unsent {
        std::vector<FileEdit> edits;
        std::vector<Rename> renames;
    };
    Unsent unsent(const std::string& root) const;

    // Call these only inside Catalog::write(). All of them see what that write has changed before.
    std::vector<FieldEdit> of(const std::string& path) const;
    // Keeps the edit if it is newer than that of the same field: later, or at the same time by the writer with the
    // greater name, or a later line of the same writer. `root` is the library root that the edit belongs to.
    bool merge(const std::string& path, const std::string& root, const FieldEdit& edit);
    // Of the file's edits of that time, and of a rename to this path.
    void setUnsent(const std::string& path, EditTime time, bool unsent);
    // The time of the newest edit or rename of the file at this path; a new edit must be later.
    EditTime newest(const std::string& path) const;

    // Edits belong to a file, so they follow it to its new path, also those that become known later. An edit of the old
    // path that is later than the rename follows, too, since somebody didn't know of the rename, unless `exists` finds
    // another file at the old path by now. Returns the paths that an edit came to or left.
    using Exists = std::function<bool(const std::string& path)>;
    std::set<std::string> rename(const Rename& rename, const std::string& root, const Exists& exists);
    // The present path of the file that had this path at the time of an edit.
    std::string current(const std::string& path, EditTime time, const Exists& exists) const;

private:
    std::string follow(std::string at, EditTime came, const Exists& exists) const;

    Catalog& catalog_;
};

// Puts the value into its field; ignores an unknown field.
void apply(const FieldEdit& edit, SoundMeta& meta);

}  // namespace brindlehum
