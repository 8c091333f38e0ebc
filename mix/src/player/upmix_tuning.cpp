// UpmixTuning: edits of the chosen upmix and of the list of own presets.
#include "mix/player/upmix_tuning.h"

#include <algorithm>

namespace brindlehum {

void UpmixTuning::setOn(bool on) {
    UpmixSettings next = now();
    next.enabled = on;
    listening_.setUpmix(next);
}

std::string UpmixTuning::choose(const std::string& name) {
    const auto next = upmixNamed(name, own());
    if (!next) { return "no upmix preset " + name; }
    listening_.setUpmix(*next);
    return {};
}

void UpmixTuning::edit(const UpmixParams& params) {
    UpmixSettings next = now();
    next.params = params;
    listening_.setUpmix(next);
}

std::string UpmixTuning::saveAs(const std::string& name) {
    if (std::string problem = upmixNameProblem(name); !problem.empty()) { return problem; }
    UpmixSettings next = now();
    const OwnUpmixPreset* const old = ownUpmixPreset(own(), name);
    next.own = old ? old->name : name;
    settings_.change([&](AppSettings& s) {
        const OwnUpmixPreset preset{next.own, next.preset, next.params};
        const auto at = std::ranges::find(s.upmixPresets, next.own, &OwnUpmixPreset::name);
        if (at != s.upmixPresets.end()) {
            *at = preset;
        } else {
            s.upmixPresets.push_back(preset);
        }
    });
    listening_.setUpmix(next);
    return {};
}

std::string UpmixTuning::rename(const std::string& to) {
    if (std::string problem = upmixNameProblem(to); !problem.empty()) { return problem; }
    UpmixSettings next = now();
    const OwnUpmixPreset* const other = ownUpmixPreset(own(), to);
    if (next.own.empty()) { return "A built-in preset keeps its name"; }
    if (other && other->name != next.own) { return "There is a preset “" + other->name + "” already"; }
    settings_.change([&](AppSettings& s) {
        const auto at = std::ranges::find(s.upmixPresets, next.own, &OwnUpmixPreset::name);
        if (at != s.upmixPresets.end()) { at->name = to; }
    });
    next.own = to;
    listening_.setUpmix(next);
    return {};
}

void UpmixTuning::remove() {
    UpmixSettings next = now();
    settings_.change(
        [&](AppSettings& s) { std::erase_if(s.upmixPresets, [&](const auto& p) { return p.name == next.own; }); });
    next.own.clear();
    listening_.setUpmix(next);
}

}  // namespace brindlehum
