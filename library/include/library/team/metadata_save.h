// MetadataSave: saves one edit of one file to the file, the catalog and the change log. Any background thread.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "library/catalog/catalog.h"
#include "library/catalog/field_edit.h"
#include "library/meta/metadata_changes.h"
#include "library/team/change_log.h"

namespace brindlehum::MetadataSave {

// The metadata to show: from the file's row if it is catalogued, else from the file itself.
SoundMeta current(const std::filesystem::path& file, Catalog* catalog);

// The metadata that an edit changes: from the file itself if it holds a whole record, with the newer words over it that
// only the catalog has; else as current(). Throws Error when the file can't be read.
SoundMeta recordToEdit(const std::filesystem::path& file, Catalog* catalog);

// The longest of the roots that contain the path; empty if none does. All paths are canonical.
std::string rootOf(const std::string& path, const std::vector<std::string>& roots);

struct Saved {
    bool embedded = false;                // false: the file can't hold the record; the catalog and the log have it
    std::optional<std::string> unshared;  // why the team's log doesn't have the edit; never set outside all roots
    // Why the catalog doesn't have it; only for a file that holds its words, which the next scan reads.
    std::optional<std::string> unindexed = {};
};

// Throws Error or std::exception, and changes nothing, when the file doesn't exist, can't be written, or can't hold
// metadata while neither catalog nor log can. Stores the file's new size and time in the row, so that the next scan has
// nothing to do. `roots` are canonical; a file outside all of them isn't logged. The edit is later than any that is
// known of the file, even if the clock isn't. What the log doesn't take is kept, and sent with the next edit or pull.
Saved save(const std::filesystem::path& file, const MetadataChanges& changes, Catalog* catalog,
           const std::vector<std::string>& roots, const std::string& user, EditTime now = ChangeLog::now());

// Moves the row of a file that was renamed, and its edits, and logs the rename, and under the new path all words that
// the file doesn't hold. Throws Error, and changes nothing, when the catalog can't be written.
void renamed(const Catalog::Row& row, const std::filesystem::path& to, Catalog& catalog,
             const std::vector<std::string>& roots, const std::string& user, EditTime now = ChangeLog::now());

}  // namespace brindlehum::MetadataSave
