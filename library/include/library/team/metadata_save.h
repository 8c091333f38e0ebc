// MetadataSave: one edit of one file, into the file, the catalog and the change log. Any background thread.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "library/catalog/catalog.h"
#include "library/meta/metadata_changes.h"

namespace brindlehum::MetadataSave {

// The metadata to show: that of the file's row if it is catalogued, else the file's own.
SoundMeta current(const std::filesystem::path& file, Catalog* catalog);

// The longest of the roots above the path; empty when it is below none. All canonical.
std::string rootOf(const std::string& path, const std::vector<std::string>& roots);

// Throws Error or std::exception, and changes nothing, when the file isn't there, when it can't be written, or when it
// can't hold metadata and there is no catalog. The row gets the file's new size and time, so that the
// next scan has nothing to do. `roots` are canonical; a file below none of them isn't logged.
void save(const std::filesystem::path& file, const MetadataChanges& changes, Catalog* catalog,
          const std::vector<std::string>& roots, const std::string& user);

}  // namespace brindlehum::MetadataSave
