// Loop candidates: phrase lengths from the loop's start, and the end of the music, rated by how well they would splice.
#include <algorithm>

#include "analysis/structure/structure.h"
#include "structure/seam.h"

namespace brindlehum::Structure {
namespace {

std::optional<int> asPhrase(int bars) {
    return std::ranges::find(phraseBars, bars) != phraseBars.end() ? std::optional(bars) : std::nullopt;
}

// The places where a loop could end, unrated, in ascending order.
std::vector<LoopCandidate> places(int musicEnd, int loopStart, int boundaries) {
    std::vector<LoopCandidate> out;
    const auto add = [&](int boundary, std::optional<int> phrase, bool contentEnd) {
        if (boundary <= loopStart || boundary >= boundaries) { return; }
        LoopCandidate place;
        place.boundary = boundary;
        place.phraseBars = phrase;
        place.isContentEnd = contentEnd;
        out.push_back(std::move(place));
    };
    for (const int length : phraseBars) {
        if (loopStart + length < musicEnd) { add(loopStart + length, length, false); }
    }
    add(musicEnd, asPhrase(musicEnd - loopStart), true);
    return out;
}

void rate(LoopCandidate& c, const Seam& seam, int musicEnd) {
    double score = 0.5 * seam.value;
    if (c.phraseBars) {
        c.reasons.push_back(std::to_string(*c.phraseBars) + "-bar phrase");
        score += *c.phraseBars % 8 == 0 ? 0.2 : 0.14;
    }
    if (c.isContentEnd) {
        c.reasons.emplace_back("musical end");
        score += 0.3;
    } else if (c.boundary < musicEnd) {
        score -= 0.05;
    }
    if (seam.reason != nullptr) { c.reasons.emplace_back(seam.reason); }
    c.score = std::clamp(score, 0.0, 1.0);
}

// Whether the bar before a boundary is too quiet to leave after. A bar that doesn't exist counts as silent.
bool leavesOnSilence(const BarProfile& profile, int bar) {
    const bool exists = bar >= 0 && bar < int(profile.rms.size());
    const double level = exists ? profile.rms[size_t(bar)] : 0;
    return level < 0.3 * double(profile.activeLevel);
}

}  // namespace

std::vector<LoopCandidate> loopCandidates(const SignalView& x, double sr, std::span<const double> bounds,
                                          const BarProfile& profile, int loopStart) {
    std::vector<LoopCandidate> out = places(profile.musicEndBar, loopStart, int(bounds.size()));
    for (LoopCandidate& c : out) {
        c.time = bounds[size_t(c.boundary)];
        rate(c, seamBetween(x, sr, c.time, bounds[size_t(loopStart)], 0.05, profile.activeLevel), profile.musicEndBar);
    }
    std::ranges::stable_sort(out, std::ranges::greater{}, &LoopCandidate::score);
    return out;
}

std::vector<LoopCandidate> exitCandidates(const SignalView& x, double sr, std::span<const double> bounds,
                                          const BarProfile& profile, int beatsPerBar) {
    const int exit = finalHitBar(x, sr, bounds, profile, beatsPerBar).value_or(profile.musicEndBar);
    const auto count = int(bounds.size());
    std::vector<LoopCandidate> out;
    const auto add = [&](int boundary, std::optional<int> phrase, double score, std::vector<std::string> reasons) {
        LoopCandidate c;
        c.boundary = boundary;
        c.time = bounds[size_t(boundary)];
        c.phraseBars = phrase;
        c.isContentEnd = boundary == exit;
        c.reasons = std::move(reasons);
        c.score = std::clamp(score - (leavesOnSilence(profile, std::max(boundary, 1) - 1) ? 0.2 : 0), 0.0, 1.0);
        out.push_back(std::move(c));
    };
    const auto phraseName = [](int bars) { return std::to_string(bars) + "-bar phrase"; };
    if (exit < count) {
        const auto phrase = asPhrase(exit - profile.musicStartBar);
        std::vector<std::string> reasons = {"musical end", "tail rings under next cue"};
        if (phrase) { reasons.push_back(phraseName(*phrase)); }
        add(exit, phrase, !phrase ? 0.9 : *phrase % 8 == 0 ? 1.0 : 0.96, std::move(reasons));
    }
    std::vector<int> lengths = {2, 4};
    lengths.insert(lengths.end(), phraseBars.begin(), phraseBars.end());
    for (const int length : lengths) {
        const int boundary = profile.musicStartBar + length;
        if (boundary < std::min(exit, count)) {
            add(boundary, asPhrase(length), length % 8 == 0 ? 0.5 : 0.46, {phraseName(length)});
        }
    }
    std::ranges::stable_sort(out, std::ranges::greater{}, &LoopCandidate::score);
    return out;
}

}  // namespace brindlehum::Structure
