// Paths: the one form in which they are compared, and the texts in which the user reads them.
#pragma once

#include <filesystem>
#include <string>

namespace brindlehum {

// Absolute, without symbolic links; for a path that doesn't exist: absolute and in its plain form. Two paths name one
// file when these are equal. Any thread; looks at the disk.
std::string canonicalPath(const std::filesystem::path& path);
// The file behind all symbolic links. Throws Error when there is none.
std::filesystem::path followed(const std::filesystem::path& path);

// For the user: on one line and valid UTF-8 whatever the path holds; the last part alone, or the whole.
std::string printableName(const std::filesystem::path& path);
std::string printablePath(const std::filesystem::path& path);
// "take.wav can't be opened: <reason>"
std::string openFailure(const std::filesystem::path& path, const std::string& reason);
// "Couldn't write /sounds/take.wav: <reason>"
std::string writeFailure(const std::filesystem::path& path, const std::string& reason);

}  // namespace brindlehum
