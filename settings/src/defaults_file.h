// The file of the user defaults: one JSON object of texts, shared by all processes of the user. Any thread.
#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>

namespace brindlehum::DefaultsFile {

using Values = std::map<std::string, std::string>;

// The texts in the file; empty when there is none. `problem` becomes why a file that is there can't be opened.
Values read(const std::filesystem::path& file, std::optional<std::string>& problem);

// Changes these keys in the file and keeps the others as they are now; waits while another process does the same.
// Follows a link and creates missing folders. New folders and files are private to the user. Throws when the system
// refuses, and leaves the old file untouched then.
void merge(const std::filesystem::path& file, const Values& changes);

}  // namespace brindlehum::DefaultsFile
