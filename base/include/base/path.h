// Paths: the form in which they are compared, and the texts that the user reads.
#pragma once

#include <exception>
#include <filesystem>
#include <string>

namespace brindlehum {

// An absolute path without symbolic links; for a path that doesn't exist, the absolute path in its plain form. Two
// paths name one file when these are equal. Any thread; reads the disk.
std::string canonicalPath(const std::filesystem::path& path);
// Resolves all symbolic links. Throws Error when there is no such file.
std::filesystem::path followed(const std::filesystem::path& path);

// Creates a folder and those that it lies in; one that is there is fine. Throws Error.
void createFolders(const std::filesystem::path& folder);

// For the user: one line of valid UTF-8 for any path. The name is the path's last part.
std::string printableName(const std::filesystem::path& path);
std::string printablePath(const std::filesystem::path& path);
// "take.wav can't be opened: <reason>"
std::string openFailure(const std::filesystem::path& path, const std::string& reason);
// The error's text without the file's name, where that is an openFailure or a writeFailure of the same file.
std::string reasonOf(const std::filesystem::path& path, const std::exception& error);
// "Can't read take.wav: <reason>"
std::string readFailure(const std::filesystem::path& path, const std::exception& error);
// "Couldn't write /sounds/take.wav: <reason>"
std::string writeFailure(const std::filesystem::path& path, const std::string& reason);

}  // namespace brindlehum
