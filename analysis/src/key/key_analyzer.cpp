// KeyAnalyzer: matches key profiles with the pitches of the whole piece.
#include "analysis/key/key_analyzer.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "key/peak_key.h"

namespace brindlehum::KeyAnalyzer {
namespace {

using Profile = std::array<double, 12>;

// Krumhansl and Kessler, "Tracing the dynamic changes in perceived tonal organization", 1982; the tonic comes first.
constexpr Profile majorProfile = {6.35, 2.23, 3.48, 2.33, 4.38, 4.09, 2.52, 5.19, 2.39, 3.66, 2.29, 2.88};
constexpr Profile minorProfile = {6.33, 2.68, 3.52, 5.38, 2.60, 3.53, 2.54, 4.75, 3.98, 2.69, 3.34, 3.17};
constexpr std::array<const char*, 12> tonics = {"C", "C#", "D", "D#", "E", "F", "F#", "G", "G#", "A", "A#", "B"};

// Column sums over all frames, scaled to a sum of 1; zeros without a signal.
template <class Row>
auto shares(const std::vector<Row>& rows) {
    std::array<double, std::tuple_size_v<Row>> sums{};
    for (const Row& row : rows) {
        for (size_t i = 0; i < sums.size(); ++i) { sums[i] += row[i]; }
    }
    const double total = std::accumulate(sums.begin(), sums.end(), 0.0);
    if (total > 0) {
        for (double& sum : sums) { sum /= total; }
    }
    return sums;
}

struct Key {
    const char* tonic = "C";
    const char* mode = "major";
    double confidence = 0;
};

KeyScores chromaScores(const Profile& chroma) {
    KeyScores scores{};
    for (size_t tonic = 0; tonic < 12; ++tonic) {
        scores[2 * tonic] = correlate(chroma, majorProfile, tonic);
        scores[2 * tonic + 1] = correlate(chroma, minorProfile, tonic);
    }
    return scores;
}

// Ties go to the lower tonic, and to major before minor.
Key bestKey(const KeyScores& scores) {
    const auto best = std::ranges::max_element(scores);
    double second = -2;
    for (const double& score : scores) {
        if (&score != &*best) { second = std::max(second, score); }
    }
    const auto at = size_t(best - scores.begin());
    return {tonics[at / 2], at % 2 == 0 ? "major" : "minor",
            std::clamp(4 * (*best - second) / std::max(std::abs(*best), 1e-9), 0.0, 1.0)};
}

// By the peaks of the spectrum, where the frames hold them.
Key findKey(const SpectralFrames& frames) {
    const Profile chroma = shares(frames.chroma);
    if (std::ranges::all_of(chroma, [](double x) { return x == 0; })) { return {}; }
    return bestKey(frames.pitches.empty() ? chromaScores(chroma) : keyScores(frames.pitches));
}

struct Balance {
    double sub, bass, low, mid, high;
};

std::vector<std::string> spectralTags(const Balance& b) {
    std::vector<std::string> tags;
    if (b.low > 0.55) { tags.emplace_back("bass-heavy"); }
    if (b.mid > 0.45) { tags.emplace_back("mid-forward"); }
    if (b.high > 0.3) { tags.emplace_back("bright"); }
    if (b.sub > 0.1) { tags.emplace_back("sub-rich"); }
    if (b.high < 0.1) { tags.emplace_back("dark"); }
    if (b.low < 0.2 && b.mid > 0.3) { tags.emplace_back("thin"); }
    return tags;
}

const char* tempoWord(double bpm, bool minor) {
    if (bpm >= 130) { return minor ? "driving" : "energetic"; }
    if (bpm >= 100) { return minor ? "tense" : "uplifting"; }
    if (bpm >= 75) { return minor ? "contemplative" : "warm"; }
    return minor ? "somber" : "serene";
}

std::vector<std::string> moodTags(const Balance& b, bool minor, double keyConfidence, double bpm, bool tempoIsSure) {
    std::vector<std::string> tags;
    const auto add = [&tags](const char* word) {
        if (std::ranges::find(tags, word) == tags.end()) { tags.emplace_back(word); }
    };
    if (bpm > 0 && tempoIsSure) { add(tempoWord(bpm, minor)); }
    if (keyConfidence > 0.2 && minor && b.bass > 0.45) { add("brooding"); }
    if (keyConfidence > 0.2 && !minor && b.high > 0.25) { add("bright"); }
    if (b.high < 0.08 && b.bass > 0.5) { add("foreboding"); }
    return tags;
}

}  // namespace

KeyResult analyze(const SpectralFrames& frames, double bpm, double bpmConfidence) {
    const Key key = findKey(frames);
    KeyResult out;
    out.tonic = key.tonic;
    out.mode = key.mode;
    out.confidence = std::round(key.confidence * 100) / 100;
    out.bands = shares(frames.bands);
    const auto& s = out.bands;
    const Balance balance{s[0], s[0] + s[1], s[0] + s[1] + s[2], s[3] + s[4], s[5] + s[6]};
    out.spectralTags = spectralTags(balance);
    out.moodTags = moodTags(balance, out.mode == "minor", key.confidence, bpm, bpmConfidence > 0.2);
    return out;
}

}  // namespace brindlehum::KeyAnalyzer
