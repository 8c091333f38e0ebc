#include "app/monitor_commands.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace brindlehum {
namespace {

// The one after `now`, from the last to the first.
template <typename Enum, size_t n>
Enum next(const std::array<Enum, n>& all, Enum now) {
    const auto at = size_t(std::ranges::find(all, now) - all.begin());
    return all[(at + 1) % n];
}

void choose(UpmixSettings& upmix, UpmixPreset preset) {
    upmix = {true, preset, params(preset)};
}

void toggleUpmix(UpmixSettings& upmix, std::optional<UpmixPreset> preset) {
    if (!preset || (upmix.enabled && upmix.own.empty() && upmix.preset == *preset)) {
        upmix.enabled = !upmix.enabled;
    } else {
        choose(upmix, *preset);
    }
}

std::string valueOf(const ControlParams& params, const std::string& name) {
    const auto found = params.find(name);
    return found == params.end() ? std::string() : found->second;
}

}  // namespace

nlohmann::json MonitorCommands::handle(const ControlParams& params) {
    act(valueOf(params, "action"), params);
    const MonitorState& state = monitor_.state();
    return {{"ok", true},
            {"dim", state.dim},
            {"mute", state.mute},
            {"mode", displayName(state.mode)},
            {"volume", state.volumeDB},
            {"running", monitor_.running()},
            {"upmix", state.upmix.enabled},
            {"upmixPreset", displayName(state.upmix.preset)},
            {"upmixAvailable", monitor_.upmixAvailable()},
            {"latency", monitor_.latency()},
            {"dropouts", monitor_.dropouts()},
            {"shortTerm", monitor_.loudness().reading().shortTerm},
            {"integrated", monitor_.loudness().reading().integrated},
            {"match", monitor_.matchDB()}};
}

void MonitorCommands::act(const std::string& action, const ControlParams& params) {
    MonitorState next = monitor_.state();
    if (action == "start") { return monitor_.start(); }
    if (action == "stop") { return monitor_.stop(); }
    if (action == "switch") { return monitor_.switchProfiles(); }
    if (action == "loudness-reset") { return monitor_.loudness().reset(); }
    if (action == "reference" && next.reference) {
        next.volumeDB = next.reference->volumeDB;
        next.dim = false;
    }
    const auto check = [&](MonitorCheck which) { next.check = next.check == which ? MonitorCheck::none : which; };
    if (action == "mono-sum") { check(MonitorCheck::monoSum); }
    if (action == "side") { check(MonitorCheck::side); }
    if (action == "dim") { next.dim = !next.dim; }
    if (action == "mute") { next.mute = !next.mute; }
    if (action == "fold") { next.mode = brindlehum::next(allMonitorModes, next.mode); }
    if (action == "up") { next.volumeDB = std::min(next.volumeDB + 1, MonitorState::highestDB); }
    if (action == "down") { next.volumeDB = std::max(next.volumeDB - 1, MonitorState::lowestDB); }
    if (action == "upmix") { toggleUpmix(next.upmix, upmixPresetFromRaw(valueOf(params, "preset"))); }
    if (action == "upmix-next") { choose(next.upmix, brindlehum::next(allUpmixPresets, next.upmix.preset)); }
    monitor_.setState(next);
}

}  // namespace brindlehum
