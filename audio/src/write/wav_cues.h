// The chunks that hold cue points (Multimedia Programming Interface and Data Specifications 1.0).
#pragma once

#include <string>
#include <vector>

#include "audio/write/wav_form.h"

namespace brindlehum {

// A `cue ` chunk, and a `LIST` chunk of type `adtl` with what belongs to the points; empty without points.
std::string cueChunks(const std::vector<WavCue>& cues);

}  // namespace brindlehum
