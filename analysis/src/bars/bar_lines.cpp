// BarLines: lays out the hypotheses, chooses one and makes it the grid.
#include "analysis/bars/bar_lines.h"

#include <algorithm>
#include <cmath>

#include "analysis/grid/downbeat_detector.h"
#include "analysis/tempo/onset_time.h"
#include "bars/attack_shift.h"
#include "bars/choice.h"
#include "bars/envelope.h"
#include "bars/given_bar.h"
#include "bars/weigh.h"

namespace brindlehum::BarLines {
namespace {

using namespace bars;

constexpr double guessIsRight = 0.43;  // share of measured pieces whose bars the first guess has right

bool startsAt(const Pulse& pulse, const Hypothesis& hypothesis, double seconds) {
    return std::ranges::any_of(barLines(pulse, hypothesis),
                               [&](double t) { return std::abs(t - seconds) <= sameBeat * pulse.period; });
}

// Beats from the start of the file; a beat up to 60 ms before it counts as its bar line.
void layGrid(MusicGrid& grid, const BeatBase& base, const Pulse& pulse, const Hypothesis& chosen) {
    grid.bpm = 60 / pulse.period;
    grid.beatsPerBar = chosen.beatsPerBar;
    grid.steady = base.steady;
    grid.attackShift = base.steady ? base.attackShift : 0;
    grid.beats.clear();
    grid.downbeats.clear();
    std::vector<double> beats = pulse.beats;
    // A pulse is weighed to 50 ms before the end only.
    const double step = base.steady ? pulse.period : beats[beats.size() - 1] - beats[beats.size() - 2];
    while (beats.back() + step < grid.duration) { beats.push_back(beats.back() + step); }
    const auto group = size_t(chosen.beatsPerBar);
    const size_t bar = (pulse.from + size_t(chosen.place)) % group;
    for (size_t i = 0; i < beats.size(); ++i) {
        if (beats[i] >= 0) { grid.beats.push_back(beats[i]); }
        if (i % group == bar && beats[i] < grid.duration - 0.001) { grid.downbeats.push_back(std::max(beats[i], 0.0)); }
    }
}

// The first guess with its beats at the attacks: on the base of its tempo where there is one. An unsteady guess lies on
// the envelope's peaks.
void moveOntoAttacks(MusicGrid& grid, std::span<const BeatBase> bases, std::span<const float> env) {
    if (grid.beats.empty()) { return; }
    const double shift = grid.steady ? 0 : usualAttackShift;
    const double bar = grid.downbeats[0] + shift;
    for (const BeatBase& base : bases) {
        const auto distance = [bar](double t) { return std::abs(t - bar); };
        const auto nearest = std::ranges::min_element(base.beats, {}, distance);
        if (std::abs(base.period * grid.bpm / 60 - 1) > 0.012 || distance(*nearest) > 0.25 * base.period) { continue; }
        const int place = int(nearest - base.beats.begin()) % grid.beatsPerBar;
        layGrid(grid, base, {base.beats, base.period}, {0, grid.beatsPerBar, place});
        return;
    }
    if (grid.steady) { return; }
    for (auto* times : {&grid.beats, &grid.downbeats}) {
        for (double& t : *times) { t = peakTime(env, size_t(std::llround(t * OnsetTime::frameRate))) + shift; }
        std::erase_if(*times, [&](double t) { return t >= grid.duration - 0.001; });
    }
    if (grid.downbeats.empty()) { grid.downbeats = {0.0}; }
}

}  // namespace

MusicGrid choose(const MusicGrid& firstGuess, const TempoResult& tempo, const GridBuilder::PulseLevels& levels,
                 const HarmonyFrames& harmony, const Given& given) {
    const Sound sound = soundOf(tempo.envFull, tempo.envLow, harmony, firstGuess.duration);
    const Weighed all = weigh(tempo, sound, levels, given.bpm, given.beatsPerBar);
    std::vector<Hypothesis> open = all.hypotheses;
    if (given.downbeat) {
        std::erase_if(open, [&](const Hypothesis& h) { return !startsAt(all.pulses[h.pulse], h, *given.downbeat); });
        if (open.empty()) { open = all.hypotheses; }
    }
    const auto choice = bars::choose(open);
    MusicGrid grid = firstGuess;
    if (!choice) {
        grid.downbeatConfidence *= guessIsRight;
        moveOntoAttacks(grid, all.bases, tempo.envFull);
        if (given.downbeat) { startBarAt(grid, *given.downbeat); }
        return grid;
    }
    const Hypothesis& best = open[choice->index];
    const Pulse& pulse = all.pulses[best.pulse];
    layGrid(grid, all.bases[pulse.base], pulse, best);
    // The groove is that of the first guess unless its tempo or bars have changed.
    if (grid.beatsPerBar != firstGuess.beatsPerBar || std::abs(grid.bpm / firstGuess.bpm - 1) > 0.001) {
        grid.grooveStart = DownbeatDetector::detectLevels(levels.onsets, GridBuilder::PulseLevels::onsetSeconds,
                                                          grid.bpm, grid.beatsPerBar)
                               .grooveStart;
    }
    grid.downbeatConfidence = choice->likelihood;
    if (given.downbeat) { startBarAt(grid, *given.downbeat); }
    return grid;
}

}  // namespace brindlehum::BarLines
