// UpmixPlanner: decides whether an upmix is offered for a source in a room, and plans it. Pure, any thread.
#pragma once

#include <vector>

#include "audio/speakers/speakers.h"
#include "upmix/upmix_params.h"
#include "upmix/upmix_plan.h"

namespace brindlehum::UpmixPlanner {

// Whether an upmix is offered; every part of the program asks this function.
bool applies(const SpeakerList& source, const SpeakerList& target);
// Ascending indices of the target's speakers that are neither C nor LFE and don't occur in the source.
std::vector<int> fills(const SpeakerList& source, const SpeakerList& target);

// A stereo source is panned over the room's ring of speakers; any other keeps its place, and its ambience fills the
// speakers that it lacks. Without L or R in the target, a stereo plan is empty. Takes a millisecond at 48 kHz.
UpmixPlan plan(const UpmixRequest& request, const UpmixTransform& transform);

}  // namespace brindlehum::UpmixPlanner
