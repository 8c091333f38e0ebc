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

void goToReference(MonitorState& state) {
    if (!state.reference) { return; }
    state.volumeDB = state.reference->volumeDB;
    state.dim = false;
}

void toggleCheck(MonitorState& state, MonitorCheck which) {
    state.check = state.check == which ? MonitorCheck::none : which;
}

void bypass(MonitorEngine& monitor, const ControlParams& params) {
    if (const Insert* const insert = insertOf(monitor.inserts(), valueOf(params, "insert"))) {
        monitor.toggleBypass(UUID(insert->id));
    }
}

using State = MonitorState;
using Params = const ControlParams&;

// Either edits the state, or runs something of the monitor's.
struct Action {
    ControlForm form;
    void (*edit)(State& now, Params params);
    void (*run)(MonitorEngine& monitor, Params params) = nullptr;
};

const Action actions[] = {
    {{"action=start", "listens to its source"}, nullptr, [](MonitorEngine& monitor, Params) { monitor.start(); }},
    {{"action=stop", "ends"}, nullptr, [](MonitorEngine& monitor, Params) { monitor.stop(); }},
    {{"action=dim", "dims, or no longer"}, [](State& now, Params) { now.dim = !now.dim; }},
    {{"action=mute", "mutes, or no longer"}, [](State& now, Params) { now.mute = !now.mute; }},
    {{"action=fold", "the next fold-down of the bus"},
     [](State& now, Params) { now.mode = next(allMonitorModes, now.mode); }},
    {{"action=up", "1 dB louder"},
     [](State& now, Params) { now.volumeDB = std::min(now.volumeDB + 1, MonitorState::highestDB); }},
    {{"action=down", "1 dB softer"},
     [](State& now, Params) { now.volumeDB = std::max(now.volumeDB - 1, MonitorState::lowestDB); }},
    {{"action=reference", "the reference level"}, [](State& now, Params) { goToReference(now); }},
    {{"action=mono-sum", "the mono sum, or no longer"},
     [](State& now, Params) { toggleCheck(now, MonitorCheck::monoSum); }},
    {{"action=side", "the difference of left and right, or no longer"},
     [](State& now, Params) { toggleCheck(now, MonitorCheck::side); }},
    {{"action=switch", "the other output"}, nullptr, [](MonitorEngine& monitor, Params) { monitor.switchProfiles(); }},
    {{"action=upmix&preset=film", "upmixes with a preset, or no longer; without a preset, on or off"},
     [](State& now, Params params) { toggleUpmix(now.upmix, upmixPresetFromRaw(valueOf(params, "preset"))); }},
    {{"action=upmix-next", "the next preset"},
     [](State& now, Params) { choose(now.upmix, next(allUpmixPresets, now.upmix.preset)); }},
    {{"action=bypass&insert=1", "bypasses an insert, by its place or name, or no longer"}, nullptr, bypass},
    {{"action=inserts-restart", "loads the inserts again after they have failed"},
     nullptr,
     [](MonitorEngine& monitor, Params) { monitor.inserts().restart(); }},
    {{"action=loudness-reset", "the integrated loudness begins anew"},
     nullptr,
     [](MonitorEngine& monitor, Params) { monitor.loudness().reset(); }},
};

void carryOut(const Action& action, MonitorEngine& monitor, Params params) {
    if (action.run) { return action.run(monitor, params); }
    MonitorState next = monitor.state();
    action.edit(next, params);
    monitor.setState(next);
}

// "fold" of "action=fold&x=1".
std::string_view wordOf(const Action& action) {
    std::string_view word = action.form.query;
    word.remove_prefix(std::string_view("action=").size());
    return word.substr(0, word.find('&'));
}

}  // namespace

nlohmann::json MonitorCommands::handle(const ControlParams& params) {
    const auto action = std::ranges::find(actions, std::string_view(valueOf(params, "action")), wordOf);
    if (action != std::end(actions)) { carryOut(*action, monitor_, params); }
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

std::vector<ControlForm> MonitorCommands::forms() {
    std::vector<ControlForm> all = {{"", "only answers how the monitor stands"}};
    for (const Action& action : actions) { all.push_back(action.form); }
    return all;
}

}  // namespace brindlehum
