// TransitionTrim: cuts a generated take to the part that leads into the music, or out of it.
#pragma once

#include <cstdint>
#include <vector>

namespace brindlehum {

// Of an intro the first `length` seconds, whose last `fade` seconds fall by a cosine: they fade out under the music. Of
// an ending the last `length` seconds, whose first `fade` seconds rise by a sine: its close stays whole. A take without
// channels or frames comes back unchanged. `sr` in Hz.
std::vector<std::vector<float>> transitionTrim(const std::vector<std::vector<float>>& channels, double sr, bool intro,
                                               double length, double fade);

}  // namespace brindlehum
