// MetadataSave: saves one edit of one file to the file, the catalog and the change log. Any background thread.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "library/catalog/catalog.h"
#include "library/meta/metadata_changes.h"

namespace brindlehum::MetadataSave {

// The metadata to show: from the file's row if it is catalogued, else from the file itself.
SoundMeta current(const std::filesystem::path& file, Catalog* catalog);

// The metadata that an edit changes: from the file itself if it holds a whole record, else as current(). Throws Error
// when the file can't be read.
SoundMeta recordToEdit(const std::filesystem::path& file, Catalog* catalog);

// The longest of the roots that contain the path; empty if none does. All paths are canonical.
std::string rootOf(const std::string& path, const std::vector<std::string>& roots);

// Throws Error or std::exception, and changes nothing, when the file doesn't exist, can't be written, or can't hold
// metadata while there is no catalog. Stores the file's new size and time in the row, so that the next scan has nothing
// to do. `roots` are canonical; a file outside all of them isn't logged. Returns false when the file can't hold the
// metadata, so that only the catalog and the log have it.
bool save(const std::filesystem::path& file, const MetadataChanges& changes, Catalog* catalog,
          const std::vector<std::string>& roots, const std::string& user);

}  // namespace brindlehum::MetadataSave
