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
    // The edits of one file that were made at one time and aren't in our log yet. `from` is its name before, if that
    // edit is a rename.
    struct Unsent {
        std::string path;
        EditTime time;
        std::optional<std::string> from;
        std::vector<FieldEdit> edits;  // alike in `embedded`
    };
    std::vector<Unsent> unsent(const std::string& root) const;  // the oldest first

    // Call these only inside Catalog::write(). All of them see what that write has changed before.
    std::vector<FieldEdit> of(const std::string& path) const;
    // Keeps the edit if it is newer than that of the same field: later, or at the same time by the writer with the
    // greater name, or a later line of the same writer. `root` is the library root that the edit belongs to.
    bool merge(const std::string& path, const std::string& root, const FieldEdit& edit);
    void markSent(const std::string& path, EditTime time);
    // The time of the newest edit or rename of the file at this path; a new edit must be later.
    EditTime newest(const std::string& path) const;

    // A rename takes the words along: the edit that records it has all fields under the new path. Earlier edits of the
    // old path end with it. Later ones were made under a name that somebody didn't know was old: they follow, unless
    // `exists` finds another file there by now. Returns the paths that an edit came to or left.
    using Exists = std::function<bool(const std::string& path)>;
    std::set<std::string> rename(const std::string& from, const std::string& to, const std::string& root, EditTime time,
                                 const Exists& exists);
    // The path to which an edit of this path belongs; none when a later rename has taken the words along.
    std::optional<std::string> current(const std::string& path, EditTime time, const Exists& exists) const;

private:
    Catalog& catalog_;
};

// Puts the value into its field; ignores an unknown field.
void apply(const FieldEdit& edit, SoundMeta& meta);

}  // namespace brindlehum
