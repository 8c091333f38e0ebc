// BarsByHand: finds, keeps and stores the values as JSON.
#include "app/bars_by_hand.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "base/stored_path.h"

namespace brindlehum {
namespace {

using nlohmann::json;

// None unless the value is a number in the range; a later version may have stored something else.
template <typename Number>
std::optional<Number> numberIn(const json& item, const char* name, double low, double high) {
    const auto found = item.find(name);
    if (found == item.end() || !found->is_number()) { return std::nullopt; }
    const double value = found->get<double>();
    return value >= low && value <= high ? std::optional(Number(value)) : std::nullopt;
}

}  // namespace

BarsByHand::BarsByHand(UserDefaults& defaults) : defaults_(defaults) {
    load();
}

GivenBars BarsByHand::find(const std::filesystem::path& file) const {
    const auto found = std::ranges::find(entries_, storedPath(file), &Entry::path);
    return found == entries_.end() ? GivenBars() : found->given;
}

void BarsByHand::set(const std::filesystem::path& file, const GivenBars& given) {
    const std::string path = storedPath(file);
    const auto removed = std::erase_if(entries_, [&](const Entry& entry) { return entry.path == path; });
    if (removed == 0 && !given.any()) { return; }
    if (given.any()) { entries_.insert(entries_.begin(), {path, given}); }
    if (entries_.size() > maxFiles) { entries_.pop_back(); }
    save();
}

void BarsByHand::rename(const std::filesystem::path& from, const std::filesystem::path& to) {
    const auto found = std::ranges::find(entries_, storedPath(from), &Entry::path);
    if (found == entries_.end()) { return; }
    found->path = storedPath(to);
    save();
}

void BarsByHand::load() {
    using namespace GivenBarsRange;
    const json all = json::parse(defaults_.data(key).value_or(""), nullptr, false);
    if (!all.is_array()) { return; }
    for (const json& item : all) {
        if (!item.is_object() || !item.contains("path") || !item["path"].is_string()) { continue; }
        const GivenBars given{numberIn<double>(item, "bpm", slowestBpm, fastestBpm),
                              numberIn<int>(item, "beatsPerBar", 1, mostBeatsPerBar),
                              numberIn<double>(item, "downbeat", 0, latestDownbeat)};
        if (given.any()) { entries_.push_back({item["path"], given}); }
    }
}

void BarsByHand::save() {
    json all = json::array();
    for (const auto& [path, given] : entries_) {
        json item = {{"path", path}};
        if (given.bpm) { item["bpm"] = *given.bpm; }
        if (given.beatsPerBar) { item["beatsPerBar"] = *given.beatsPerBar; }
        if (given.downbeat) { item["downbeat"] = *given.downbeat; }
        all.push_back(item);
    }
    defaults_.set(key, all.dump());
}

}  // namespace brindlehum
