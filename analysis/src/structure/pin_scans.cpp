// Pin scans: scores for novelty, level and phrase length, and the test for a loop by the file's name or edges.
#include "structure/pin_scans.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

#include "base/text.h"
#include "structure/seam.h"

namespace brindlehum::Structure {
namespace {

constexpr double distinct = 0.45;  // the least score of a boundary of the form

struct Best {
    std::optional<int> boundary;
    double score = -std::numeric_limits<double>::infinity();
    void offer(int candidate, double value) {
        if (!(value > score)) { return; }  // keeps the earliest of equal scores
        boundary = candidate;
        score = value;
    }
    std::optional<int> ifDistinct() const { return score >= distinct ? boundary : std::nullopt; }
};

bool atBoundary(const Piece& piece, const std::optional<double>& seconds, int boundary) {
    return seconds && std::abs(*seconds - piece.bounds[size_t(boundary)]) < 0.5 * piece.barSeconds;
}

// How often the level rises by a tenth within a bar, from one sixteenth of it to the next.
int risesIn(const Piece& piece, int bar) {
    constexpr int slices = 16;
    const double from = piece.bounds[size_t(bar)];
    const double length = (piece.bounds[size_t(bar) + 1] - from) / slices;
    int rises = 0;
    double before = -1;
    for (int i = 0; i < slices; ++i) {
        const double start = from + i * length;
        const double level = piece.mono.rms(int64_t(piece.sr * start), int64_t(piece.sr * (start + length)));
        rises += int(before >= 0 && level > 1.1 * before);
        before = level;
    }
    return rises;
}

}  // namespace

std::optional<int> findFadeStart(const Piece& piece) {
    const auto bars = int(piece.profile.rms.size());
    // The loudest bar from each bar on, so that a soft bar between loud ones starts no fade.
    std::vector<double> rest(size_t(bars) + 1, 0.0);
    for (int bar = bars - 1; bar >= 0; --bar) { rest[size_t(bar)] = std::max(rest[size_t(bar) + 1], piece.level(bar)); }
    const auto firstBelow = [&](double share) {
        const auto below = [&](double level) { return level < share * piece.active(); };
        return int(std::ranges::find_if(rest, below) - rest.begin());
    };
    const int start = firstBelow(0.8);
    const int end = firstBelow(0.1);
    if (start <= piece.start() || end - start < 4) { return std::nullopt; }
    int falls = 0;
    int rises = 0;
    for (int bar = start; bar < end; ++bar) {
        falls += int(rest[size_t(bar) + 1] < 0.98 * rest[size_t(bar)]);
        rises += risesIn(piece, bar);
    }
    const bool deep = rest[size_t(end) - 1] < 0.35 * piece.active();
    return deep && 10 * falls >= 6 * (end - start) && rises >= end - start ? std::optional(start) : std::nullopt;
}

void rateInFade(std::vector<LoopCandidate>& candidates, int fadeStart, const Piece& piece) {
    for (LoopCandidate& c : candidates) {
        if (c.boundary <= fadeStart) { continue; }
        c.score *= std::clamp(piece.level(c.boundary - 1) / piece.active(), 0.0, 1.0);
        c.reasons.emplace_back("in the fade-out");
    }
    std::ranges::stable_sort(candidates, std::ranges::greater{}, &LoopCandidate::score);
}

std::optional<double> silentHead(const Piece& piece) {
    if (piece.start() < 1) { return std::nullopt; }
    for (int bar = 0; bar < piece.start(); ++bar) {
        if (piece.level(bar) >= 0.05 * piece.active()) { return std::nullopt; }
    }
    return piece.bounds[size_t(piece.start())];
}

std::optional<int> findIntroEnd(const Piece& piece) {
    Best best;
    for (int b = piece.start() + 1; b <= std::min(piece.end - 4, piece.start() + 16); ++b) {
        const double rise = std::clamp(piece.level(b) / std::max(piece.level(b - 1), 1e-6) - 1, 0.0, 1.0);
        double score = 0.2 * rise + 0.55 * piece.novelty[size_t(b)] + phraseBonus(b - piece.start(), 0.2, 0.15, 0.05);
        if (atBoundary(piece, piece.cooked.bodyEntry, b)) { score += 0.15; }
        best.offer(b, score);
    }
    return best.ifDistinct();
}

std::optional<int> findEndingStart(const Piece& piece, int introEnd) {
    Best best;
    for (int b = std::max(piece.end - 8, introEnd + 4); b < piece.end; ++b) {
        const double ratio = std::max(piece.level(b), 1e-6) / std::max(piece.level(b - 1), 1e-6);
        const double change = std::min(std::abs(std::log(ratio)), 1.0);
        double score = 0.15 * change + 0.55 * piece.novelty[size_t(b)] + phraseBonus(piece.end - b, 0.2, 0.15, 0.05);
        if (atBoundary(piece, piece.cooked.tailStart, b)) { score += 0.1; }
        best.offer(b, score);
    }
    return best.ifDistinct();
}

bool fadesOut(const Piece& piece) {
    if (piece.end - piece.start() < 8) { return false; }
    const int first = std::max(piece.end - 5, piece.start());
    for (int bar = first + 1; bar < piece.end; ++bar) {
        if (piece.level(bar) > 1.02 * piece.level(bar - 1)) { return false; }
    }
    const double last = piece.level(piece.end - 1);
    return last > 0 && 20 * std::log10(piece.level(first) / last) > 9;
}

int findLoopEnd(const Piece& piece, int introEnd, int endingStart) {
    const int length = endingStart - introEnd;
    if (length < 4) { return endingStart; }
    Best best;
    for (int b = introEnd + 4; b <= endingStart; ++b) {
        // The bars before, at and after the seam should sound like the bars around the loop's start.
        double sum = 0;
        int count = 0;
        for (int shift = introEnd != 0 ? -1 : 0; shift <= 1; ++shift) {
            if (!piece.similarity.contains(introEnd + shift, b + shift)) { continue; }
            sum += piece.similarity.at(introEnd + shift, b + shift);
            ++count;
        }
        double score = count > 0 ? 0.45 * sum / count : 0;
        score += 0.25 * seamBetween(piece.mono, piece.sr, piece.bounds[size_t(b)], piece.bounds[size_t(introEnd)], 1,
                                    piece.active())
                            .value;
        score += phraseBonus(b - introEnd, 0.15, 0.1, 0);
        if (b == endingStart) { score += 0.1; }
        score += 0.05 * (b - introEnd) / length;
        best.offer(b, score);
    }
    return best.boundary.value_or(endingStart);
}

bool isLoopFile(const Piece& piece, std::string_view name, bool finalHit) {
    const auto boundaries = int(piece.bounds.size());
    if (std::max(piece.profile.musicEndBar, piece.start() + 1) < boundaries - 2) { return false; }
    const std::string lower = lowerAscii(name);
    const auto says = [&lower](const char* word) { return lower.find(word) != std::string::npos; };
    if (says("loop") && !says("intro") && !says("end")) { return true; }
    const auto count = piece.mono.size();
    const auto width = int64_t(0.25 * piece.sr);
    const double head = piece.mono.rms(0, width);
    const double tail = piece.mono.rms(count - width, count);
    const double loud = 0.25 * piece.active();
    const bool alike = std::abs(20 * std::log10(std::max(head, 1e-6) / std::max(tail, 1e-6))) < 6;
    return head > loud && tail > loud && alike && !finalHit;
}

}  // namespace brindlehum::Structure
