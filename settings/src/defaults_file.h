// The stored form of the user defaults: one JSON object of texts, shared by all processes of the user. Any thread.
#pragma once

#include <filesystem>
#include <map>
#include <string>

namespace brindlehum::DefaultsFile {

using Values = std::map<std::string, std::string>;

// The texts of the file; nothing when it can't be read.
Values read(const std::filesystem::path& file);

// Changes these keys in the file and leaves the others as they are now, waiting while another process does the same.
// Follows a link and creates missing folders, private to the user as is a new file. Throws when the system refuses;
// the old file is untouched then.
void merge(const std::filesystem::path& file, const Values& changes);

}  // namespace brindlehum::DefaultsFile
