// LevelMatch: what makes two profiles equally loud, so that the better one wins and not the louder one.
#pragma once

#include <vector>

#include "monitor/state/monitor_state.h"
#include "settings/output_profile.h"

// Pure; any thread but the render thread.
namespace brindlehum::LevelMatch {

// The loudness, as a linear power, of what leaves for a profile, from the K-weighted mean squares of the bus's
// channels. Channels count as independent; speakers have the weights of BS.1770. An upmix counts as the fold-down that
// it replaces.
double power(const MonitorState& state, const OutputProfile& profile, const std::vector<double>& busPowers);

// The gain in dB, never above 0, at which `heard` is as loud as `other`: only the louder one is lowered. While nothing
// has been measured, all channels count as equally loud.
double gainDB(const MonitorState& state, const OutputProfile& heard, const OutputProfile& other,
              const std::vector<double>& busPowers);

}  // namespace brindlehum::LevelMatch
