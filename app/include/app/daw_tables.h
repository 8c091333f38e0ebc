// DAWs and their key commands: the built-in ones, and those of the user's own table.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace brindlehum {

struct DAW {
    std::string id;                           // as a caller names it
    std::string name;                         // as the answer names it; empty: the id
    std::vector<std::string> windows;         // window classes (WM_CLASS) without versions, in small letters
    std::map<std::string, std::string> keys;  // command word to key string, as `DAWControl::parse` reads it
    bool operator==(const DAW&) const = default;
};

// In the order in which a running one is looked for.
using DAWs = std::vector<DAW>;
const DAWs& builtInDAWs();
// Key names and their codes, in the numbering of Keystroke.
const std::map<std::string_view, uint16_t>& dawKeyCodes();

struct DAWTable {
    DAWs daws;
    std::vector<std::string> problems;  // a line each
};
// The built-in DAWs with the changes of the user's JSON: an object with a member for each DAW, which may hold "name",
// "windows" (a list of window classes) and "keys" (an object of command words and key strings). A new DAW needs
// windows. What makes no sense is left out and becomes a problem; the rest takes effect.
DAWTable readDAWTable(const std::string& json);
// The same of a file; a missing one changes nothing.
DAWTable loadDAWTable(const std::filesystem::path& file);
// `daws.json` beside the user's settings.
std::filesystem::path usersDAWTable();

}  // namespace brindlehum
