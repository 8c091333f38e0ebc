// ControlCommands: the command table, and the answers.
#include "app/control_commands.h"

#include <QString>
#include <algorithm>
#include <functional>
#include <map>
#include <nlohmann/json.hpp>
#include <string_view>

namespace brindlehum {

ControlCommands::ControlCommands(PlayerModel& player, SettingsStore& settings, TempEditBatch& tempEdits)
    : player_(player), settings_(settings), tempEdits_(tempEdits) {}

nlohmann::json ControlCommands::handle(const std::string& command, const ControlParams& params) {
    if (command == "status") { return status(); }
    const auto& file = player_.sound().info();
    Transport& transport = player_.transport();
    const std::map<std::string_view, std::function<void()>> table = {
        {"toggle", [&] { transport.togglePlay(); }},
        {"play", [&] { transport.play(std::nullopt); }},
        {"stop", [&] { transport.stopAndReturn(); }},
        {"loop", [&] { transport.setLoop(!transport.loop()); }},
        {"profile", [&] { selectProfile(params); }},
        {"tempedits",
         [&] {
             if (file) { tempEdits_.make({file->url}); }
         }},
        {"panel", [&] { settings_.change([](AppSettings& s) { s.finderPanel = !s.finderPanel; }); }},
        {"expert", [&] { settings_.change([](AppSettings& s) { s.expertMode = !s.expertMode; }); }},
    };
    const auto known = table.find(command);
    if (known == table.end()) { return {{"error", "unknown command " + command}}; }
    known->second();
    return ok();
}

nlohmann::json ControlCommands::ok() const {
    return {{"ok", true}, {"profile", settings_.activeProfile().name}, {"playing", player_.isPlaying()}};
}

nlohmann::json ControlCommands::status() const {
    const AppSettings& settings = settings_.value();
    const auto& file = player_.sound().info();
    nlohmann::json profiles = nlohmann::json::array();
    for (const auto& profile : settings.profiles) { profiles.push_back(profile.name); }
    return {{"playing", player_.isPlaying()},           {"file", file ? file->url.filename().string() : std::string()},
            {"profile", settings.activeProfile().name}, {"profiles", profiles},
            {"finderPanel", settings.finderPanel},      {"expert", settings.expertMode}};
}

// Selects the profile with this name, ignoring case, else the one after the active one, wrapping round.
void ControlCommands::selectProfile(const ControlParams& params) {
    const auto& profiles = settings_.value().profiles;
    if (profiles.empty()) { return; }
    if (const auto name = params.find("name"); name != params.end()) {
        const QString wanted = QString::fromStdString(name->second);
        const auto named = std::ranges::find_if(profiles, [&](const OutputProfile& profile) {
            return QString::fromStdString(profile.name).compare(wanted, Qt::CaseInsensitive) == 0;
        });
        if (named != profiles.end()) { return player_.listening().selectProfile(named->id); }
    }
    const auto active = std::ranges::find(profiles, settings_.activeProfile().id, &OutputProfile::id);
    const size_t next = (size_t(active - profiles.begin()) + 1) % profiles.size();
    player_.listening().selectProfile(profiles[next].id);
}

}  // namespace brindlehum
