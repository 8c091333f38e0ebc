// TempEditRenderer: renders a plan as audio. Stateless, callable on any thread.
#pragma once

#include <cstdint>
#include <vector>

#include "dsp/sound.h"
#include "edits/edit_plan.h"

namespace brindlehum::TempEditRenderer {

// Returns one list of samples per channel, each length(plan) long. `source` is at `sampleRate` Hz, and the plan's spans
// lie within it; only they are copied.
//
// Spans that don't follow each other in the source are joined by an equal-power crossfade. It fades in the source's
// samples before the later span and ends on that span's first frame, so nothing after a splice moves, and the total
// length is the sum of the spans. Before a pause the sound fades out within 80 ms, and the span behind it fades in by
// the crossfade, to its full level on its first frame. A loop is made to wrap.
std::vector<std::vector<float>> render(const EditPlan& plan, const Sound& source, double sampleRate,
                                       const TempEditOptions& options);

// Frames that `render` returns.
int64_t length(const EditPlan& plan, double sampleRate);

}  // namespace brindlehum::TempEditRenderer
