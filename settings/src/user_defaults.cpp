// UserDefaults in one JSON file, and in memory.
#include "settings/user_defaults.h"

#include <cstdlib>
#include <exception>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>

#include "base/home_folder.h"
#include "durable_file.h"

namespace brindlehum {

namespace {

using nlohmann::json;
namespace fs = std::filesystem;

struct Stored {
    json values = json::object();
    bool unreadable = false;  // a file is there, but not one of ours
};

Stored readFile(const fs::path& file) {
    std::error_code error;
    if (!fs::exists(file, error) && !error) { return {}; }
    std::ifstream stream(file, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(stream), {}};
    json values = json::parse(text, nullptr, /*allow_exceptions=*/false);
    if (!values.is_object()) { return {json::object(), true}; }
    return {std::move(values), false};
}

// The file behind symbolic links, so that a replacement doesn't turn a link into a file.
fs::path behindLinks(const fs::path& file) {
    std::error_code error;
    const fs::path target = fs::weakly_canonical(file, error);
    return error ? file : target;
}

bool isText(const std::string& value) {
    try {
        return !json(value).dump().empty();
    } catch (const json::exception&) {
        return false;  // not UTF-8
    }
}

}  // namespace

FileDefaults::FileDefaults(fs::path file) : file_(std::move(file)) {
    const Stored stored = readFile(file_);
    for (const auto& [key, value] : stored.values.items()) {
        if (value.is_string()) { values_[key] = value.get<std::string>(); }
    }
}

fs::path FileDefaults::defaultFile() {
    const char* config = std::getenv("XDG_CONFIG_HOME");
    const bool usable = config != nullptr && config[0] == '/';  // a relative one is to be ignored
    return (usable ? fs::path(config) : homeFolder() / ".config") / "Brindlehum" / "defaults.json";
}

std::optional<std::string> FileDefaults::data(const std::string& key) const {
    const auto entry = values_.find(key);
    return entry == values_.end() ? std::nullopt : std::optional(entry->second);
}

void FileDefaults::set(const std::string& key, const std::string& value) {
    if (!isText(key) || !isText(value)) { return; }
    values_[key] = value;
    unstored_.insert(key);
    store();
}

void FileDefaults::store() {
    const fs::path file = behindLinks(file_);
    const LockedFolder folder(file.parent_path());
    if (!folder.isOpen()) { return; }
    // Another process may have stored keys of its own since we looked.
    Stored stored = readFile(file);
    for (const std::string& key : unstored_) { stored.values[key] = values_.at(key); }
    const std::string name = file.filename();
    if (stored.unreadable && !folder.rename(name, name + ".unreadable")) { return; }
    if (folder.replace(name, stored.values.dump(2) + "\n")) { unstored_.clear(); }
}

std::optional<std::string> MemoryDefaults::data(const std::string& key) const {
    const auto entry = values_.find(key);
    return entry == values_.end() ? std::nullopt : std::optional(entry->second);
}

void MemoryDefaults::set(const std::string& key, const std::string& value) {
    values_[key] = value;
    ++writes;
}

}  // namespace brindlehum
