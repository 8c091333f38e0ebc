#include "bars/weigh.h"

#include <algorithm>
#include <iterator>

namespace brindlehum::bars {

Weighed weigh(const TempoResult& tempo, const Sound& sound, const GridBuilder::PulseLevels& levels,
              std::optional<double> bpm, std::optional<int> beatsPerBar) {
    Weighed out;
    std::vector<int> meters = {3, 4};
    if (beatsPerBar) { meters = {*beatsPerBar}; }
    out.bases = beatBases(tempo, levels, sound.music.duration, bpm);
    for (size_t i = 0; i < out.bases.size(); ++i) {
        std::ranges::move(pulses(out.bases[i], i, sound.full, sound.music, bpm.has_value()),
                          std::back_inserter(out.pulses));
    }
    for (size_t i = 0; i < out.pulses.size(); ++i) {
        std::ranges::move(hypotheses(out.pulses[i], i, sound, meters), std::back_inserter(out.hypotheses));
    }
    return out;
}

std::vector<double> barLines(const Pulse& pulse, const Hypothesis& hypothesis) {
    std::vector<double> out;
    const auto group = size_t(hypothesis.beatsPerBar);
    for (size_t i = (pulse.from + size_t(hypothesis.place)) % group; i < pulse.beats.size(); i += group) {
        out.push_back(pulse.beats[i]);
    }
    return out;
}

}  // namespace brindlehum::bars
