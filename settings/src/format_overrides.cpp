// FormatOverrides: finds, keeps and stores the choices as JSON.
#include "settings/format_overrides.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <utility>

#include "base/stored_path.h"

namespace brindlehum {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;

constexpr const char* asDetected = "auto";

}  // namespace

FormatOverrides::FormatOverrides(UserDefaults& defaults) : defaults_(defaults) {
    load();
}

const FormatOverrides::Entry* FormatOverrides::entry(const Entries& entries, const fs::path& path, int channels) {
    const auto found = std::ranges::find_if(
        entries, [&, stored = storedPath(path)](const Entry& e) { return e.channels == channels && e.path == stored; });
    return found == entries.end() ? nullptr : &*found;
}

void FormatOverrides::put(Entries& entries, Entry entry, size_t most) {
    std::erase_if(entries, [&](const Entry& e) { return e.channels == entry.channels && e.path == entry.path; });
    entries.insert(entries.begin(), std::move(entry));
    if (entries.size() > most) { entries.pop_back(); }
}

std::optional<SourceFormat> FormatOverrides::find(const fs::path& file, int channels) const {
    if (const Entry* own = entry(files_, file, channels)) { return own->format; }
    return findFolder(file.parent_path(), channels);
}

std::optional<SourceFormat> FormatOverrides::findFolder(const fs::path& folder, int channels) const {
    const Entry* found = entry(folders_, folder, channels);
    return found ? found->format : std::nullopt;
}

void FormatOverrides::setFile(const fs::path& file, int channels, const std::optional<SourceFormat>& format) {
    const bool needed = format || findFolder(file.parent_path(), channels);
    if (!needed) { return forgetFile(file); }
    put(files_, {storedPath(file), channels, format}, maxFiles);
    save();
}

void FormatOverrides::setFolder(const fs::path& folder, int channels, const std::optional<SourceFormat>& format) {
    put(folders_, {storedPath(folder), channels, format}, maxFolders);
    std::erase_if(folders_, [](const Entry& e) { return !e.format; });
    save();
}

void FormatOverrides::forgetFile(const fs::path& file) {
    const auto count = std::erase_if(files_, [stored = storedPath(file)](const Entry& e) { return e.path == stored; });
    if (count > 0) { save(); }
}

void FormatOverrides::rename(const fs::path& from, const fs::path& to) {
    const std::string storedFrom = storedPath(from);
    bool any = false;
    for (Entry& entry : files_) {
        if (entry.path != storedFrom) { continue; }
        entry.path = storedPath(to);
        any = true;
    }
    if (any) { save(); }
}

// Entries that can't be read, or that a later version wrote, are left out.
void FormatOverrides::load() {
    const auto entryOf = [](const json& item) -> std::optional<Entry> {
        try {
            Entry entry{item.at("path"), item.at("channels"),
                        sourceFormatFromRaw(item.at("format").get<std::string>())};
            const bool fits = entry.format ? entry.format->channels() == entry.channels : item["format"] == asDetected;
            return fits ? std::optional(std::move(entry)) : std::nullopt;
        } catch (const json::exception&) { return std::nullopt; }
    };
    const json all = json::parse(defaults_.data(key).value_or(""), nullptr, false);
    if (!all.is_object()) { return; }
    for (const auto& [name, entries] : {std::pair("files", &files_), std::pair("folders", &folders_)}) {
        const auto list = all.find(name);
        if (list == all.end() || !list->is_array()) { continue; }
        for (const json& item : *list) {
            if (auto entry = entryOf(item)) { entries->push_back(std::move(*entry)); }
        }
    }
}

void FormatOverrides::save() {
    json all = json::object();
    const auto write = [&](const char* name, const Entries& entries) {
        json& list = all[name] = json::array();
        for (const Entry& entry : entries) {
            list.push_back({{"path", entry.path},
                            {"channels", entry.channels},
                            {"format", entry.format ? rawValue(*entry.format) : asDetected}});
        }
    };
    write("files", files_);
    write("folders", folders_);
    defaults_.set(key, all.dump());
}

}  // namespace brindlehum
