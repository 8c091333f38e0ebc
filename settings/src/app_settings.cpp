// AppSettings in JSON: reading ignores what it can't use, writing stores every field.
#include "settings/app_settings.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <nlohmann/json.hpp>
#include <utility>

#include "base/error.h"
#include "base/home_folder.h"
#include "base/stored_path.h"

namespace brindlehum {

namespace {

using nlohmann::json;
using nlohmann::ordered_json;

constexpr std::array generationTexts = {std::pair("generationAddress", &AppSettings::generationAddress),
                                        std::pair("generationHeader", &AppSettings::generationHeader),
                                        std::pair("generationAgreed", &AppSettings::generationAgreed),
                                        std::pair("generationKeyed", &AppSettings::generationKeyed)};

// Leaves `field` as it is when the key is absent or doesn't hold a T.
template <typename T>
void read(const json& record, const char* key, T& field) {
    const auto entry = record.find(key);
    if (entry == record.end()) { return; }
    try {
        field = entry->template get<T>();
    } catch (const json::exception&) {
        return;  // treat an unreadable key like a missing one
    }
}

void readPath(const json& record, const char* key, std::string& path) {
    std::string stored = storedPath(path);
    read(record, key, stored);
    path = pathFromStored(stored);
}

void readPaths(const json& record, const char* key, std::vector<std::string>& paths) {
    read(record, key, paths);
    for (std::string& path : paths) { path = pathFromStored(path); }
}

void readProfiles(const json& record, std::vector<OutputProfile>& profiles) {
    std::vector<OutputProfile> stored;
    read(record, "profiles", stored);
    if (!stored.empty()) { profiles = std::move(stored); }
}

void readActiveProfile(const json& record, std::optional<UUID>& id) {
    std::string text;
    read(record, "activeProfileID", text);
    id = UUID::parse(text);
}

// JSON has no infinity and no NaN; if one were written as null, the record would be unreadable.
void requireFinite(const ordered_json& value) {
    if (value.is_number_float() && !std::isfinite(value.get<double>())) {
        throw Error("A setting isn't a finite number");
    }
    if (value.is_structured()) { std::for_each(value.begin(), value.end(), requireFinite); }
}

}  // namespace

const OutputProfile& AppSettings::activeProfile() const {
    const auto active = std::ranges::find(profiles, activeProfileID, &OutputProfile::id);
    return active == profiles.end() ? profiles.front() : *active;
}

std::filesystem::path AppSettings::pulls() const {
    return pullsFolder.starts_with('/') ? pullsFolder : defaultPullsFolder();
}

std::string AppSettings::defaultPullsFolder() {
    return homeFolder() / "Music" / "Brindlehum Pulls";
}

std::optional<AppSettings> AppSettings::decode(const std::string& text) {
    const json record = json::parse(text, nullptr, /*allow_exceptions=*/false);
    if (!record.is_object()) { return std::nullopt; }
    AppSettings settings;
    readProfiles(record, settings.profiles);
    readActiveProfile(record, settings.activeProfileID);
    read(record, "autoPlay", settings.autoPlay);
    read(record, "finderPanel", settings.finderPanel);
    read(record, "spacePlaysInFinder", settings.spacePlaysInFinder);
    read(record, "monoToCenter", settings.monoToCenter);
    readPath(record, "hrtfFile", settings.hrtfFile);
    readPath(record, "pullsFolder", settings.pullsFolder);
    read(record, "pullsAsFloat", settings.pullsAsFloat);
    readPaths(record, "libraryRoots", settings.libraryRoots);
    readPath(record, "ytDlpPath", settings.ytDlpPath);
    read(record, "tempEditsBesideSource", settings.tempEditsBesideSource);
    read(record, "expertMode", settings.expertMode);
    read(record, "mediaShowsTitle", settings.mediaShowsTitle);
    for (const auto& [key, field] : generationTexts) { read(record, key, settings.*field); }
    read(record, "generationSendsName", settings.generationSendsName);
    read(record, "upmix", settings.upmix);
    if (const auto own = record.find("upmixPresets"); own != record.end()) {
        settings.upmixPresets = ownUpmixPresetsFrom(*own);
    }
    return settings;
}

std::string AppSettings::encode() const {
    ordered_json record;
    record["profiles"] = json(profiles);
    if (activeProfileID) { record["activeProfileID"] = activeProfileID->string(); }
    record["autoPlay"] = autoPlay;
    record["finderPanel"] = finderPanel;
    record["spacePlaysInFinder"] = spacePlaysInFinder;
    record["monoToCenter"] = monoToCenter;
    record["hrtfFile"] = storedPath(hrtfFile);
    record["pullsFolder"] = storedPath(pullsFolder);
    record["pullsAsFloat"] = pullsAsFloat;
    record["libraryRoots"] = ordered_json::array();
    for (const std::string& root : libraryRoots) { record["libraryRoots"].push_back(storedPath(root)); }
    record["ytDlpPath"] = storedPath(ytDlpPath);
    record["tempEditsBesideSource"] = tempEditsBesideSource;
    record["expertMode"] = expertMode;
    record["mediaShowsTitle"] = mediaShowsTitle;
    for (const auto& [key, field] : generationTexts) { record[key] = this->*field; }
    record["generationSendsName"] = generationSendsName;
    record["upmix"] = json(upmix);
    record["upmixPresets"] = json(upmixPresets);
    requireFinite(record);
    // Names come from devices, too: one that isn't UTF-8 must not end the saving of all the rest.
    return record.dump(-1, ' ', false, ordered_json::error_handler_t::replace);
}

}  // namespace brindlehum
