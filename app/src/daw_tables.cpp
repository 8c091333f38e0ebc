// The tables of key commands, and the reader of the user's own.
#include "app/daw_tables.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <nlohmann/json.hpp>

#include "app/daw_control.h"
#include "base/text.h"
#include "settings/user_defaults.h"

namespace brindlehum {
namespace {

using Json = nlohmann::ordered_json;

constexpr size_t maxBytes = 1 << 18;

struct Row {
    const char* command;
    std::array<const char*, 4> keys;  // Pro Tools, Logic, REAPER, Ardour
};

// Those of Ardour are its own defaults on Linux.
constexpr Row rows[] = {
    {"play", {"space", "space", "space", "space"}},
    {"record", {"cmd+space", "r", "ctrl+r", "shift+r"}},
    {"save", {"cmd+s", "cmd+s", "cmd+s", "cmd+s"}},
    {"undo", {"cmd+z", "cmd+z", "cmd+z", "cmd+z"}},
    {"redo", {"cmd+shift+z", "cmd+shift+z", "cmd+shift+z", "cmd+r"}},
    {"marker", {"enter", "opt+'", "m", "tab"}},
    {"rtz", {"return", "return", "home", "home"}},
    {"zoom-in", {"]", "cmd+right", "=", "="}},
    {"zoom-out", {"[", "cmd+left", "-", "-"}},
    {"cut", {"cmd+x", "cmd+x", "cmd+x", "cmd+x"}},
    {"copy", {"cmd+c", "cmd+c", "cmd+c", "cmd+c"}},
    {"paste", {"cmd+v", "cmd+v", "cmd+v", "cmd+v"}},
    {"separate", {"b", "cmd+t", "s", "s"}},
    {"fade", {"cmd+f", "ctrl+f", "f", "/"}},
    {"bounce", {"cmd+opt+b", "cmd+b", "cmd+opt+r", "opt+e"}},
    {"mix-window", {"cmd+=", "x", "cmd+m", "opt+m"}},
    {"import", {"cmd+shift+i", "cmd+shift+i", "cmd+i", "cmd+i"}},
};

DAWs makeDAWs() {
    DAWs daws = {{"protools", "Pro Tools", {"pro tools", "protools", "protools.exe"}, {}},
                 {"logic", "Logic Pro", {"logic pro"}, {}},
                 {"reaper", "REAPER", {"reaper", "reaper.exe"}, {}},
                 {"ardour", "Ardour", {"ardour", "mixbus", "mixbus32c"}, {}}};
    for (const Row& row : rows) {
        for (size_t daw = 0; daw < daws.size(); ++daw) { daws[daw].keys[row.command] = row.keys[daw]; }
    }
    return daws;
}

// Takes over one member of the user's table, as far as it makes sense.
class DAWReader {
public:
    DAWReader(DAWTable& table, const std::string& id) : table_(table), id_(id) {}

    void read(const Json& row) {
        if (!row.is_object()) { return complain("isn't an object"); }
        auto known = std::ranges::find(table_.daws, id_, &DAW::id);
        DAW daw = known == table_.daws.end() ? DAW{id_, "", {}, {}} : *known;
        for (const auto& [field, value] : row.items()) {
            if (field == "name") {
                readName(value, daw);
            } else if (field == "windows") {
                readWindows(value, daw);
            } else if (field == "keys") {
                readKeys(value, daw);
            } else {
                complain("nothing is known of \"" + field + "\"");
            }
        }
        if (known != table_.daws.end()) {
            *known = std::move(daw);
        } else if (daw.windows.empty()) {
            complain("needs \"windows\", a list of window classes");
        } else {
            table_.daws.push_back(std::move(daw));
        }
    }

private:
    void complain(const std::string& problem) { table_.problems.push_back(id_ + ": " + problem); }

    void readName(const Json& value, DAW& daw) {
        if (!value.is_string()) { return complain("\"name\" isn't a text"); }
        daw.name = value.get<std::string>();
    }
    void readWindows(const Json& value, DAW& daw) {
        const auto isClass = [](const Json& each) { return each.is_string() && !each.get<std::string>().empty(); };
        if (!value.is_array() || value.empty() || !std::ranges::all_of(value, isClass)) {
            return complain("\"windows\" isn't a list of window classes");
        }
        daw.windows.clear();
        for (const auto& each : value) { daw.windows.push_back(lowerAscii(each.get<std::string>())); }
    }
    void readKeys(const Json& value, DAW& daw) {
        if (!value.is_object()) { return complain("\"keys\" isn't an object"); }
        for (const auto& [command, keys] : value.items()) {
            if (!keys.is_string() || !DAWControl::parse(keys.get<std::string>())) {
                complain(command + ": no key is called " + keys.dump());
            } else {
                daw.keys[command] = keys.get<std::string>();
            }
        }
    }

    DAWTable& table_;
    const std::string& id_;
};

}  // namespace

const DAWs& builtInDAWs() {
    static const DAWs daws = makeDAWs();
    return daws;
}

const std::map<std::string_view, uint16_t>& dawKeyCodes() {
    static const std::map<std::string_view, uint16_t> codes = {
        {"a", 0},          {"s", 1},       {"d", 2},       {"f", 3},      {"h", 4},      {"g", 5},        {"z", 6},
        {"x", 7},          {"c", 8},       {"v", 9},       {"b", 11},     {"q", 12},     {"w", 13},       {"e", 14},
        {"r", 15},         {"y", 16},      {"t", 17},      {"o", 31},     {"u", 32},     {"i", 34},       {"p", 35},
        {"l", 37},         {"j", 38},      {"k", 40},      {"n", 45},     {"m", 46},     {"1", 18},       {"2", 19},
        {"3", 20},         {"4", 21},      {"6", 22},      {"5", 23},     {"9", 25},     {"7", 26},       {"8", 28},
        {"0", 29},         {"=", 24},      {"-", 27},      {"]", 30},     {"[", 33},     {"'", 39},       {";", 41},
        {"\\", 42},        {",", 43},      {"/", 44},      {".", 47},     {"`", 50},     {"return", 36},  {"tab", 48},
        {"space", 49},     {"delete", 51}, {"escape", 53}, {"enter", 76}, {"kp*", 67},   {"kp+", 69},     {"kp-", 78},
        {"kp0", 82},       {"kp1", 83},    {"kp2", 84},    {"kp3", 85},   {"home", 115}, {"pageup", 116}, {"end", 119},
        {"pagedown", 121}, {"left", 123},  {"right", 124}, {"down", 125}, {"up", 126},   {"f12", 111},
    };
    return codes;
}

DAWTable readDAWTable(const std::string& json) {
    DAWTable table{builtInDAWs(), {}};
    const Json document = Json::parse(json, nullptr, false, true);
    if (!document.is_object()) {
        table.problems = {document.is_discarded() ? "isn't JSON" : "isn't a JSON object"};
        return table;
    }
    for (const auto& [id, row] : document.items()) { DAWReader(table, id).read(row); }
    for (std::string& problem : table.problems) { std::ranges::replace(problem, '\n', ' '); }
    return table;
}

std::filesystem::path usersDAWTable() {
    return FileDefaults::defaultFile().parent_path() / "daws.json";
}

DAWTable loadDAWTable(const std::filesystem::path& file) {
    std::error_code error;
    const auto status = std::filesystem::status(file, error);
    if (file.empty() || !std::filesystem::exists(status)) { return {builtInDAWs(), {}}; }
    if (!std::filesystem::is_regular_file(status)) { return {builtInDAWs(), {"isn't a file"}}; }
    std::ifstream in(file, std::ios::binary);
    std::string text(maxBytes + 1, '\0');
    in.read(text.data(), std::streamsize(text.size()));
    text.resize(size_t(std::max<std::streamsize>(in.gcount(), 0)));
    if (in.bad() || (text.empty() && !in.eof())) { return {builtInDAWs(), {"can't be read"}}; }
    if (text.size() > maxBytes) { return {builtInDAWs(), {"is larger than 256 KB"}}; }
    return readDAWTable(text);
}

}  // namespace brindlehum
