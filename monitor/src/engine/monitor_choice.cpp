#include "monitor/engine/monitor_choice.h"

#include <nlohmann/json.hpp>

namespace brindlehum {
namespace {

const char* const stateKey = "monitor.state";
const char* const sourceKey = "monitor.source";
const char* const profileKey = "monitor.profile";
const char* const otherProfileKey = "monitor.otherProfile";

}  // namespace

MonitorState MonitorChoice::state() const {
    const auto json = nlohmann::json::parse(defaults_.data(stateKey).value_or(""), nullptr, false);
    return json.is_object() ? json.get<MonitorState>() : MonitorState();
}

// An empty text stands for none.
std::optional<std::string> MonitorChoice::sourceUID() const {
    auto uid = defaults_.data(sourceKey);
    return uid && !uid->empty() ? uid : std::nullopt;
}

std::optional<UUID> MonitorChoice::profileID() const {
    return UUID::parse(defaults_.data(profileKey).value_or(""));
}

std::optional<UUID> MonitorChoice::otherProfileID() const {
    return UUID::parse(defaults_.data(otherProfileKey).value_or(""));
}

void MonitorChoice::keep(const MonitorState& state) {
    defaults_.set(stateKey, nlohmann::json(state).dump());
}

void MonitorChoice::keepSource(const std::optional<std::string>& uid) {
    defaults_.set(sourceKey, uid.value_or(""));
}

void MonitorChoice::keepProfile(const std::optional<UUID>& id) {
    defaults_.set(profileKey, id ? id->string() : "");
}

void MonitorChoice::keepOtherProfile(const std::optional<UUID>& id) {
    defaults_.set(otherProfileKey, id ? id->string() : "");
}

}  // namespace brindlehum
