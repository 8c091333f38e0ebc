#include "key/peak_key.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>
#include <numeric>
#include <vector>

namespace brindlehum {
namespace {

using Chroma = std::array<double, 12>;
using Sums = std::array<double, PitchSums::cells>;

// Temperley, "Music and Probability", 2007, from the Kostka-Payne corpus; the tonic comes first.
constexpr Chroma majorProfile = {0.748, 0.060, 0.488, 0.082, 0.670, 0.460, 0.096, 0.715, 0.104, 0.366, 0.057, 0.400};
constexpr Chroma minorProfile = {0.712, 0.084, 0.474, 0.618, 0.049, 0.460, 0.105, 0.747, 0.404, 0.067, 0.133, 0.330};

Sums sumUp(std::span<const PitchSums> pitches, PitchSums::Cells PitchSums::*kind) {
    Sums out{};
    for (const PitchSums& some : pitches) {
        for (size_t i = 0; i < out.size(); ++i) { out[i] += (some.*kind)[i]; }
    }
    return out;
}

double tuningOf(const Sums& linear) {
    std::complex<double> sum;
    for (size_t i = 0; i < linear.size(); ++i) {
        const double semitones = (double(i) + 0.5) / PitchSums::perSemitone;
        sum += linear[i] * std::polar(1.0, 2 * std::numbers::pi * semitones);
    }
    return std::arg(sum) / (2 * std::numbers::pi) * PitchSums::perSemitone;
}

Chroma chromaOf(const Sums& cells, double tuning) {
    Chroma out{};
    for (size_t i = 0; i < cells.size(); ++i) {
        const double semitones = (double(i) + 0.5 - tuning) / PitchSums::perSemitone;
        out[size_t((std::lround(semitones) + 12) % 12)] += cells[i];
    }
    return out;
}

void add(KeyScores& scores, const Chroma& chroma, double weight) {
    for (size_t tonic = 0; tonic < 12; ++tonic) {
        scores[2 * tonic] += weight * correlate(chroma, majorProfile, tonic);
        scores[2 * tonic + 1] += weight * correlate(chroma, minorProfile, tonic);
    }
}

void addBoth(KeyScores& scores, std::span<const PitchSums> pitches, double tuning, double weight) {
    add(scores, chromaOf(sumUp(pitches, &PitchSums::linear), tuning), weight / 2);
    add(scores, chromaOf(sumUp(pitches, &PitchSums::compressed), tuning), weight / 2);
}

// The last four seconds or so of music: of stretches that have a tenth of what the loud ones have.
std::span<const PitchSums> ending(std::span<const PitchSums> pitches) {
    std::vector<double> strength;
    for (const PitchSums& some : pitches) {
        strength.push_back(std::accumulate(some.linear.begin(), some.linear.end(), 0.0));
    }
    std::vector<double> sorted = strength;
    std::ranges::sort(sorted);
    size_t end = pitches.size();
    while (end > 1 && strength[end - 1] <= 0.1 * sorted[sorted.size() * 9 / 10]) { --end; }
    const size_t begin = end - std::min<size_t>(end, 4);
    return pitches.subspan(begin, end - begin);
}

}  // namespace

double correlate(std::span<const double, 12> chroma, std::span<const double, 12> profile, size_t shift) {
    const double chromaMean = std::accumulate(chroma.begin(), chroma.end(), 0.0) / 12;
    const double profileMean = std::accumulate(profile.begin(), profile.end(), 0.0) / 12;
    double cross = 0;
    double chromaSquares = 0;
    double profileSquares = 0;
    for (size_t i = 0; i < 12; ++i) {
        const double a = chroma[(i + shift) % 12] - chromaMean;
        const double b = profile[i] - profileMean;
        cross += a * b;
        chromaSquares += a * a;
        profileSquares += b * b;
    }
    const double squares = chromaSquares * profileSquares;
    return squares == 0 ? 0 : cross / std::sqrt(squares);
}

double tuningOf(std::span<const PitchSums> pitches) {
    return tuningOf(sumUp(pitches, &PitchSums::linear));
}

KeyScores keyScores(std::span<const PitchSums> pitches) {
    KeyScores scores{};
    if (pitches.empty()) { return scores; }
    const double tuning = tuningOf(pitches);
    addBoth(scores, pitches, tuning, 1);
    addBoth(scores, ending(pitches), tuning, 0.15);
    return scores;
}

}  // namespace brindlehum
