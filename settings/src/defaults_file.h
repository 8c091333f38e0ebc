// The file of the user defaults: one JSON object of texts, shared by all processes of the user. Any thread.
#pragma once

#include <filesystem>
#include <map>
#include <string>

namespace brindlehum::DefaultsFile {

using Values = std::map<std::string, std::string>;

// The texts in the file; empty when it can't be read.
Values read(const std::filesystem::path& file);

// Changes these keys in the file and keeps the others as they are now; waits while another process does the same.
// Follows a link and creates missing folders. New folders and files are private to the user. Throws when the system
// refuses, and leaves the old file untouched then.
void merge(const std::filesystem::path& file, const Values& changes);

}  // namespace brindlehum::DefaultsFile
