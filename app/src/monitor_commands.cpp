#include "app/monitor_commands.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "base/number_text.h"

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

nlohmann::json insertsOf(const MonitorInserts& inserts) {
    auto out = nlohmann::json::array();
    for (const Insert& each : inserts.list()) {
        out.push_back({{"name", each.name}, {"bypassed", each.isBypassed}, {"problem", inserts.problemOf(each.id)}});
    }
    return out;
}

// The one that a number from 1 or a name stands for; none for another text.
const Insert* insertOf(const MonitorInserts& inserts, const std::string& text) {
    const auto place = numberAtStart<size_t>(text);
    for (size_t i = 0; i < inserts.list().size(); ++i) {
        if (i + 1 == place || inserts.list()[i].name == text) { return &inserts.list()[i]; }
    }
    return nullptr;
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
            {"inserts", insertsOf(monitor_.inserts())},
            {"insertsMessage", monitor_.inserts().message()},
            {"match", monitor_.matchDB()}};
}

void MonitorCommands::act(const std::string& action, const ControlParams& params) {
    MonitorState next = monitor_.state();
    if (action == "start") { return monitor_.start(); }
    if (action == "stop") { return monitor_.stop(); }
    if (action == "switch") { return monitor_.switchProfiles(); }
    if (action == "loudness-reset") { return monitor_.loudness().reset(); }
    if (action == "inserts-restart") { return monitor_.inserts().restart(); }
    if (action == "bypass") {
        if (const Insert* const insert = insertOf(monitor_.inserts(), valueOf(params, "insert"))) {
            monitor_.toggleBypass(UUID(insert->id));
        }
        return;
    }
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
