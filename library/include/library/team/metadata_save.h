// MetadataSave: one edit of one file, into the file, the catalog and the change log. Any background thread.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "library/catalog/catalog.h"
#include "library/meta/metadata_changes.h"

namespace brindlehum::MetadataSave {

// The metadata as a person should see it: of a catalogued file its row's, else the file's own.
SoundMeta current(const std::filesystem::path& file, Catalog* catalog);

// The longest of the roots above the path; empty when it is below none. All canonical.
std::string rootOf(const std::string& path, const std::vector<std::string>& roots);

// Throws Error or std::exception when the file isn't there or can't be written, or when the edit of a file that can't
// take it finds no catalog to go to; nothing is changed then. The row gets the file's new size and time, so that the
// next scan has nothing to do. `roots` are canonical; a file below none of them isn't logged.
void save(const std::filesystem::path& file, const MetadataChanges& changes, Catalog* catalog,
          const std::vector<std::string>& roots, const std::string& user);

}  // namespace brindlehum::MetadataSave
