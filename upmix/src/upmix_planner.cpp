// UpmixPlanner: compares two speaker lists, and chooses between the two planners.
#include "upmix/upmix_planner.h"

#include <algorithm>

#include "plan_parts.h"

namespace brindlehum::UpmixPlanner {
namespace {

bool holds(const SpeakerList& list, SpeakerID speaker) {
    return std::ranges::find(list, speaker) != list.end();
}

bool holdsPair(const SpeakerList& list) {
    return holds(list, SpeakerID::L) && holds(list, SpeakerID::R);
}

}  // namespace

bool applies(const SpeakerList& source, const SpeakerList& target) {
    if (!holdsPair(source) || !holdsPair(target)) { return false; }
    if (source != SpeakerList{SpeakerID::L, SpeakerID::R}) { return !fills(source, target).empty(); }
    const auto fullRange = std::ranges::count_if(target, [](SpeakerID s) { return s != SpeakerID::LFE; });
    return fullRange > 2;
}

std::vector<int> fills(const SpeakerList& source, const SpeakerList& target) {
    std::vector<int> indices;
    for (size_t i = 0; i < target.size(); ++i) {
        const SpeakerID speaker = target[i];
        if (speaker == SpeakerID::C || speaker == SpeakerID::LFE || holds(source, speaker)) { continue; }
        indices.push_back(int(i));
    }
    return indices;
}

UpmixPlan plan(const UpmixRequest& request, const UpmixTransform& transform) {
    const bool stereo = request.source == SpeakerList{SpeakerID::L, SpeakerID::R};
    return stereo ? stereoPlan(request, transform) : layoutPlan(request, transform);
}

}  // namespace brindlehum::UpmixPlanner
