// UpmixPlanner: decides whether an upmix is offered for a source in a room, and which speakers it would fill.
#pragma once

#include <vector>

#include "audio/speakers/speakers.h"

namespace brindlehum::UpmixPlanner {

// Whether an upmix is offered; every part of the program asks this function.
bool applies(const SpeakerList& source, const SpeakerList& target);
// Ascending indices of the target's speakers that are neither C nor LFE and don't occur in the source.
std::vector<int> fills(const SpeakerList& source, const SpeakerList& target);

}  // namespace brindlehum::UpmixPlanner
