// Stored paths: any path as UTF-8 for settings, logs and output, and back again without a loss.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace brindlehum {

// A path of well-formed UTF-8 stays as it is. In others, each byte that belongs to no UTF-8 character becomes "//" and
// two upper-case hexadecimal digits: "caf\xE9.wav" is stored as "caf//E9.wav". No name holds a slash, and no plain path
// two in a row, so neither ordinary paths nor records of older versions hold such a sequence by chance. Where a path as
// typed does, its slash is escaped too, as "//2F".
std::string storedPath(const std::filesystem::path& path);
// The path that storedPath() was given. A text without escapes is the path itself.
std::filesystem::path pathFromStored(std::string_view text);

}  // namespace brindlehum
