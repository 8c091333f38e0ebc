#include "bars/evidence.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "bars/envelope.h"

namespace brindlehum::bars {
namespace {

using Values = std::vector<double>;

double meanOf(std::span<const double> values) {
    return std::accumulate(values.begin(), values.end(), 0.0) / double(std::max<size_t>(values.size(), 1));
}

// Mean 0 and deviation 1; zeros when all are equal.
void standardise(Values& values) {
    const double mean = meanOf(values);
    double squares = 0;
    for (const double v : values) { squares += (v - mean) * (v - mean); }
    const double deviation = std::sqrt(squares / double(values.size()));
    for (double& v : values) { v = deviation > 1e-6 ? (v - mean) / deviation : 0; }
}

template <class ValueAt>
Values standardised(std::span<const double> beats, ValueAt valueAt) {
    Values out(beats.size());
    std::ranges::transform(beats, out.begin(), valueAt);
    standardise(out);
    return out;
}

// What is measured once per beat with music, each kind standardised.
struct BeatValues {
    Values harmony, slowHarmony, low, accent, onset;
};

BeatValues beatValues(const Pulse& pulse, const Sound& sound) {
    const std::span beats(&pulse.beats[pulse.from], pulse.to - pulse.from);
    const double reach = std::max(pulse.period, 0.25);
    const auto changes = [&](double beatsWide) {
        Values out(beats.size());
        std::ranges::transform(beats, out.begin(),
                               [&](double t) { return novelty(sound.chroma, t, beatsWide * reach); });
        out[0] = meanOf(out);  // the first beat is the start of the music, not a change of it
        standardise(out);
        return out;
    };
    return {changes(1), changes(2),
            standardised(beats, [&](double t) { return sound.lowLevel.mean(t + 0.02, t + 0.02 + 0.5 * reach).row[0]; }),
            standardised(beats, [&](double t) { return accent(sound.low, t - pulse.attackShift); }),
            standardised(beats, [&](double t) { return accent(sound.full, t - pulse.attackShift); })};
}

// The evidence that doesn't depend on the bars.
EvidenceRow pulseEvidence(const Pulse& pulse, const Sound& sound) {
    EvidenceRow row{};
    Values beats(pulse.beats.begin() + std::ptrdiff_t(pulse.from), pulse.beats.begin() + std::ptrdiff_t(pulse.to));
    for (double& t : beats) { t -= pulse.attackShift; }
    const double onBeats = meanAccent(sound.full, beats) + 1e-9;
    const auto later = [&](double share) {
        Values moved = beats;
        for (double& t : moved) { t += share * pulse.period; }
        return meanAccent(sound.full, moved) / onBeats;
    };
    const double octaves = std::log2(60 / pulse.period / 115);
    row[beatLikeness] = likeness(sound.full, pulse.period);
    row[twoBeatLikeness] = likeness(sound.full, 2 * pulse.period);
    row[tempo] = octaves;
    row[tempoSquared] = octaves * octaves;
    row[secondPhase] = pulse.second ? 1 : 0;
    row[onsetOnBeats] = std::log((pulse.strength + 1e-9) / (sound.fullMean + 1e-9));
    row[onsetOnThirds] = std::max(later(1.0 / 3), later(2.0 / 3));
    row[onsetOnQuarters] = 0.5 * (later(0.25) + later(0.75));
    return row;
}

double placeMean(const Values& values, int place, int beatsPerBar) {
    double sum = 0;
    int count = 0;
    for (auto i = size_t(place); i < values.size(); i += size_t(beatsPerBar), ++count) { sum += values[i]; }
    return count > 0 ? sum / count : 0;
}

// Mean cosine between rows `lag` apart.
double likenessOfRows(std::span<const SegmentMeans<12>::Row> rows, size_t lag) {
    double sum = 0;
    for (size_t i = lag; i < rows.size(); ++i) {
        sum += std::inner_product(rows[i].begin(), rows[i].end(), rows[i - lag].begin(), 0.0);
    }
    return sum / double(rows.size() - lag);
}

// Harmony of each bar less the piece's own, as unit vectors.
std::vector<SegmentMeans<12>::Row> barRows(std::span<const double> barLines, double bar,
                                           const SegmentMeans<12>& chroma) {
    std::vector<SegmentMeans<12>::Row> rows;
    SegmentMeans<12>::Row mean{};
    for (const double t : barLines) {
        rows.push_back(chroma.mean(t, t + bar).row);
        for (size_t i = 0; i < mean.size(); ++i) { mean[i] += rows.back()[i] / double(barLines.size()); }
    }
    for (auto& row : rows) {
        for (size_t i = 0; i < row.size(); ++i) { row[i] -= mean[i]; }
        const double norm = std::sqrt(std::inner_product(row.begin(), row.end(), row.begin(), 0.0)) + 1e-9;
        for (double& v : row) { v /= norm; }
    }
    return rows;
}

void addBarEvidence(Hypothesis& h, const Pulse& pulse, const BeatValues& values, const Sound& sound) {
    EvidenceRow& row = h.evidence;
    const auto onBar = [&](const Values& v) { return placeMean(v, h.place, h.beatsPerBar); };
    const auto onMiddle = [&](const Values& v) {
        return h.beatsPerBar == 4 ? placeMean(v, (h.place + 2) % 4, h.beatsPerBar) : 0;
    };
    row[lowOnBar] = onBar(values.low);
    row[lowOnMiddle] = onMiddle(values.low);
    row[harmonyOnBar] = onBar(values.harmony);
    row[harmonyOnMiddle] = onMiddle(values.harmony);
    row[slowOnMiddle] = onMiddle(values.slowHarmony);
    row[tempoInThree] = h.beatsPerBar == 3 ? row[tempo] : 0;
    row[accentOnBar] = onBar(values.accent);
    row[onsetOnMiddle] = onMiddle(values.onset);

    Values barLines;
    double nearest = sound.music.duration;
    const auto group = size_t(h.beatsPerBar);
    for (size_t i = (pulse.from + size_t(h.place)) % group; i < pulse.beats.size(); i += group) {
        barLines.push_back(pulse.beats[i]);
        nearest = std::min(nearest, std::abs(pulse.beats[i] - pulse.attackShift + attackDelay - sound.music.first));
    }
    row[startsOnBar] = nearest < 0.15 * pulse.period ? 1 : 0;
    const auto rows = barRows(barLines, pulse.period * h.beatsPerBar, sound.chroma);
    // With few bars all three say little, and all are negative, since the rows have their own mean taken off.
    row[fourBars] =
        rows.size() < 7 ? 0 : likenessOfRows(rows, 4) - 0.5 * (likenessOfRows(rows, 2) + likenessOfRows(rows, 3));
}

}  // namespace

Sound soundOf(std::span<const float> full, std::span<const float> low, const HarmonyFrames& harmony, double duration) {
    const double reference = std::max(50 * harmony.meanPower, 1e-30);
    double sum = 0;
    for (const float x : full) { sum += x; }
    return {full,
            low,
            sum / double(std::max<size_t>(full.size(), 1)),
            {harmony.chroma.size(), [&](size_t f) { return harmony.chroma[f]; }},
            {harmony.lowEnergy.size(),
             [&](size_t f) { return std::array{std::log1p(100 * double(harmony.lowEnergy[f]) / reference)}; }},
            {firstAttack(full), lastAttack(full), duration}};
}

double novelty(const SegmentMeans<12>& chroma, double t, double reach) {
    constexpr double margin = 0.03;
    const auto before = chroma.mean(t - reach + margin, t - 0.3 * margin);
    const auto after = chroma.mean(t + margin, t + reach - 0.3 * margin);
    const auto dot = [](const auto& a, const auto& b) {
        return std::inner_product(a.row.begin(), a.row.end(), b.row.begin(), 0.0);
    };
    const double norms = std::sqrt(dot(before, before) * dot(after, after));
    return before.known && after.known && norms > 1e-12 ? 1 - dot(before, after) / norms : 0;
}

std::vector<Hypothesis> hypotheses(const Pulse& pulse, size_t index, const Sound& sound, std::span<const int> meters) {
    EvidenceRow shared = pulseEvidence(pulse, sound);
    const BeatValues values = beatValues(pulse, sound);
    std::vector<Hypothesis> out;
    for (const int beatsPerBar : meters) {
        shared[lowBarLikeness] = likeness(sound.low, pulse.period * beatsPerBar);
        for (int place = 0; place < beatsPerBar; ++place) {
            if ((pulse.from + size_t(place)) % size_t(beatsPerBar) >= pulse.beats.size()) { continue; }
            out.push_back({index, beatsPerBar, place, shared});
            addBarEvidence(out.back(), pulse, values, sound);
        }
    }
    return out;
}

}  // namespace brindlehum::bars
