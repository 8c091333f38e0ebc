// Measures an upmix and the plain fold-down of a sound, and finds the gains at which both are equally loud.
#pragma once

#include <functional>
#include <memory>

#include "audio/stream/frame_source.h"
#include "mix/player/listening_mix.h"
#include "mix/player/play_span.h"

namespace brindlehum {

struct UpmixLoudness {
    double upmixDb = 0;    // K-weighted power over all speakers, by the channel weights of ITU-R BS.1770-4
    double plainDb = 0;    // the same of the fold-down
    double plainPeak = 0;  // largest magnitude in any output
};

// Renders both through the snapshot's profile, without its trims, since those make up for the room. Speakers that are
// off don't count. No gate: both are measured over the same part, so a gate would leave out the same blocks. Any thread
// but the render thread. `stop` is asked now and then; the levels are of no use once it returned true. Throws Error.
UpmixLoudness upmixLevels(const ListeningSnapshot& snapshot, const std::function<std::unique_ptr<FrameSource>()>& open,
                          FrameRange part, double sampleRate, const std::function<bool()>& stop);

struct MatchedGains {
    double upmixDb = 0;
    double plainDb = 0;
};
// The fold-down is changed, unless that would drive its peaks beyond full scale at this volume: the rest is then taken
// off the upmix. 0 dB for both when either is silent.
MatchedGains matchedGains(const UpmixLoudness& levels, double volumeDb);

}  // namespace brindlehum
