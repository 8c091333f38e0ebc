// LinkLoader: how the download tool is found, asked and understood, as functions without state.
#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/child_processes.h"

namespace brindlehum::LinkLoader {

inline constexpr std::string_view outputName = "%(title).120B [%(id)s].%(ext)s";  // in the tool's template language
inline constexpr std::string_view notFound = "yt-dlp not found. Install with: sudo apt install yt-dlp ffmpeg";

// The text without blanks around it, if it is a web link.
std::optional<std::string> linkIn(const std::string& text);
// The link's host, or "link".
std::string hostOf(const std::string& link);

// The tool to use: `custom` if it is an absolute path of a program, else the user's own before the system's. Looks at
// the disk.
std::optional<std::filesystem::path> ytDlp(const std::string& custom);

// `folder` is where the sound goes; an absolute path.
std::vector<std::string> arguments(const std::filesystem::path& folder, const std::string& link);
// What the child's environment has besides ours; `path` is our PATH.
std::map<std::string, std::string> environment(const std::string& path);

struct Outcome {
    std::filesystem::path file;  // that the tool says it wrote; empty after a failure
    std::string problem;         // for the user
};
Outcome outcome(const ChildResult& result);

}  // namespace brindlehum::LinkLoader
