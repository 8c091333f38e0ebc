// Beat path: the beats of music whose tempo moves.
#pragma once

#include <span>
#include <vector>

namespace brindlehum::bars {

// The times in the envelope's time (seconds, ascending) that collect the most onset at intervals near 60 / `bpm`, by
// dynamic programming over the whole envelope (Ellis, "Beat tracking by dynamic programming", 2007).
std::vector<double> beatPath(std::span<const float> env, double bpm);

}  // namespace brindlehum::bars
