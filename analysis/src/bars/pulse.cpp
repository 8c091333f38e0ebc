// Pulse: divides each beat of a base into 36 ticks, and tries every ratio and phase on them.
#include "bars/pulse.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "bars/envelope.h"

namespace brindlehum::bars {
namespace {

constexpr int ticksPerBeat = 36;
constexpr int phaseStep = 3;  // ticks

// Ticks of a pulse's period, for 1, 1/2, 2, 3, 1/3, 3/2, 2/3, 4/3 and 3/4 of the base's. Further bases get the first
// three: the tempi between them are covered by the first base.
constexpr std::array<int, 9> periods = {36, 18, 72, 108, 12, 54, 24, 48, 27};
constexpr size_t furtherPeriods = 3;

// All ticks from the start of the file to two beats past the last one.
std::vector<double> ticks(const BeatBase& base) {
    const std::vector<double>& beats = base.beats;
    const double head = beats[1] - beats[0];
    const double tail = beats[beats.size() - 1] - beats[beats.size() - 2];
    std::vector<double> all;
    for (int k = int(beats[0] / head) + 1; k > 0; --k) { all.push_back(beats[0] - head * k); }
    all.insert(all.end(), beats.begin(), beats.end());
    for (int k = 1; k <= 2; ++k) { all.push_back(beats.back() + tail * k); }
    std::vector<double> out;
    out.reserve((all.size() - 1) * ticksPerBeat);
    for (size_t i = 0; i + 1 < all.size(); ++i) {
        for (int t = 0; t < ticksPerBeat; ++t) { out.push_back(all[i] + (all[i + 1] - all[i]) * t / ticksPerBeat); }
    }
    return out;
}

struct Phase {
    int offset = 0;  // ticks
    double strength = 0;
};

int apart(int a, int b, int period) {
    const int distance = std::abs(a - b);
    return std::min(distance, period - distance);
}

// The mean over the teeth of a phase of what `at` reads at each.
template <class At>
double meanOnTeeth(std::span<const double> ticks, int offset, int period, At at) {
    const size_t teeth = (ticks.size() - 1 - size_t(period)) / size_t(period);
    double sum = 0;
    for (size_t k = 0; k < teeth; ++k) { sum += at(ticks[size_t(offset) + k * size_t(period)]); }
    return sum / double(std::max<size_t>(teeth, 1));
}

// An accent is the largest within 23 ms, so that of fast beats several phases are as strong: of these, the one that
// lies on the peaks.
Phase onPeaks(std::span<const Phase> all, const Phase& strongest, std::span<const double> ticks, int period,
              std::span<const float> env, double attackShift) {
    Phase best = strongest;
    double highest = -1;
    for (const Phase& phase : all) {
        if (phase.strength < 0.95 * strongest.strength || 6 * apart(phase.offset, strongest.offset, period) > period) {
            continue;
        }
        const double height =
            meanOnTeeth(ticks, phase.offset, period, [&](double t) { return valueAt(env, t - attackShift); });
        if (height > highest) {
            highest = height;
            best = phase;
        }
    }
    return best;
}

// The strongest phase, and the strongest of those that lie more than a fifth of a period away from it.
std::vector<Phase> bestPhases(std::span<const double> ticks, int period, std::span<const float> env,
                              double attackShift) {
    std::vector<Phase> all;
    for (int offset = 0; offset < period; offset += phaseStep) {
        all.push_back(
            {offset, meanOnTeeth(ticks, offset, period, [&](double t) { return accent(env, t - attackShift); })});
    }
    std::ranges::stable_sort(all, std::ranges::greater(), &Phase::strength);
    std::vector<Phase> out = {onPeaks(all, all[0], ticks, period, env, attackShift)};
    for (const Phase& phase : all) {
        if (5 * apart(phase.offset, out[0].offset, period) <= period || phase.strength < 0.5 * all[0].strength) {
            continue;
        }
        out.push_back(phase);
        break;
    }
    return out;
}

// The beats [from, to) within 100 ms of the music.
void findMusic(Pulse& pulse, const MusicSpan& music) {
    const auto from = std::ranges::upper_bound(pulse.beats, music.first - 0.1);
    const auto to = std::ranges::lower_bound(pulse.beats, music.last + 0.1);
    pulse.from = size_t(from - pulse.beats.begin());
    pulse.to = std::max(pulse.from, size_t(to - pulse.beats.begin()));
}

}  // namespace

std::vector<Pulse> pulses(const BeatBase& base, size_t index, std::span<const float> env, const MusicSpan& music,
                          bool onlyItsOwn) {
    std::vector<Pulse> out;
    const std::vector<double> all = ticks(base);
    const size_t tried = onlyItsOwn ? 1 : index == 0 ? periods.size() : furtherPeriods;
    for (size_t i = 0; i < tried; ++i) {
        const int period = periods[i];
        const double seconds = base.period * period / ticksPerBeat;
        if (!onlyItsOwn && (60 / seconds < 45 || 60 / seconds > 230)) { continue; }
        if (all.size() <= 2 * size_t(period)) { continue; }
        bool second = false;
        for (const Phase& phase : bestPhases(all, period, env, base.attackShift)) {
            Pulse pulse{{}, seconds, base.attackShift, 0, 0, phase.strength, std::exchange(second, true), index};
            for (size_t t = size_t(phase.offset); t < all.size(); t += size_t(period)) {
                if (all[t] > -0.06 && all[t] < music.duration - 0.05) { pulse.beats.push_back(all[t]); }
            }
            findMusic(pulse, music);
            if (pulse.beats.size() >= 8 && pulse.to - pulse.from >= 8) { out.push_back(std::move(pulse)); }
        }
    }
    return out;
}

}  // namespace brindlehum::bars
