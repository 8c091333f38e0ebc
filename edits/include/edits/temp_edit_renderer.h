// TempEditRenderer: renders a plan as audio. Stateless, callable on any thread.
#pragma once

#include <cstdint>
#include <vector>

#include "edits/edit_plan.h"

namespace brindlehum::TempEditRenderer {

// One list of samples a channel, all of length(plan). `channels` is the source at `sampleRate` Hz: equally long, and
// the plan's spans lie within them.
//
// Spans that don't follow each other in the source are joined by an equal-power crossfade that ends on the first frame
// of the later one and fades in the samples before it in the source. So nothing after a splice moves, and the length is
// the sum of the spans. A loop is made to wrap.
std::vector<std::vector<float>> render(const EditPlan& plan, const std::vector<std::vector<float>>& channels,
                                       double sampleRate, const TempEditOptions& options);

// Frames that `render` returns.
int64_t length(const EditPlan& plan, double sampleRate);

}  // namespace brindlehum::TempEditRenderer
