// LengthFit: tries every bar line of an edit.
#include "length_fit.h"

#include <algorithm>
#include <cmath>

namespace brindlehum::TempEditPlanner {
namespace {

constexpr double shortBar = 0.1;        // an entry breaks the meter
constexpr double heldPulse = 0.1;       // a pause holds the pulse
constexpr double heldBar = 0.1;         // times the pause in bars
constexpr double cutOffLevel = 0.3;     // times the level at which a pause cuts the music off, against its active level
constexpr double withinPhrase = 0.1;    // nobody breathes there
constexpr double mostForAPause = 0.4;   // what a stop from the full level between two phrases costs, but for its length
constexpr double shortestPause = 0.15;  // seconds; less sounds like a fault
constexpr double longestPause = 1.5;
constexpr double sameTime = 0.06;  // seconds between a bar line and its beat

}  // namespace

LengthFit::LengthFit(const PieceLines& piece, const MusicGrid& grid, const StructureResult& structure,
                     const JumpTable& jumps)
    : piece_(piece), grid_(grid), structure_(structure), jumps_(jumps), beatOfLine_(size_t(piece.count()), -1) {
    for (int line = 0; line < piece.count(); ++line) {
        const double time = piece.seconds(line);
        const auto at = std::ranges::lower_bound(grid.beats, time - sameTime);
        if (at != grid.beats.end() && *at <= time + sameTime) {
            beatOfLine_[size_t(line)] = int(at - grid.beats.begin());
        }
    }
}

std::optional<double> LengthFit::entryTime(int line, int beats) const {
    const int at = beatOf(line) - beats;
    if (line < 1 || beats < 1 || at < 0 || beatOf(line) < 0) { return std::nullopt; }
    const double time = grid_.beats[size_t(at)];
    return time > piece_.seconds(line - 1) + sameTime ? std::optional(time) : std::nullopt;
}

int LengthFit::beatNumber(int line, int beats) const {
    const int whole = beatOf(line - 1) >= 0 ? beatOf(line) - beatOf(line - 1) : grid_.beatsPerBar;
    return whole - beats + 1;
}

int LengthFit::beatsWithin(int line, double shortSec) const {
    int beats = 0;
    while (entryTime(line, beats + 1) && beatsSec(line, beats + 1) <= shortSec) { ++beats; }
    return beats;
}

double LengthFit::beatsSec(int line, int beats) const {
    const auto time = entryTime(line, beats);
    return time ? piece_.seconds(line) - *time : 0;
}

// What was heard before the entry and what follows it, against the beats that the source has there, a bar each.
std::optional<double> LengthFit::entryCost(const Join& join, int beats) const {
    const auto& features = structure_.beatFeatures;
    const int left = beatOf(join.from);
    const int entered = beatOf(join.to) - beats;
    if (left < 0 || entered < 0) { return std::nullopt; }
    double sum = 0;
    int count = 0;
    for (int i = -grid_.beatsPerBar; i < grid_.beatsPerBar; ++i) {
        if (left + i < 0 || entered + i < 0) { continue; }
        if (std::max(left, entered) + i >= std::ssize(features)) { continue; }
        sum += Structure::alike(features[size_t(left + i)], features[size_t(entered + i)]);
        ++count;
    }
    if (count == 0 || sum / count < jumps_.threshold) { return std::nullopt; }
    return 1 - sum / count + shortBar;
}

double LengthFit::pauseCost(const Join& join) const {
    const auto& profile = structure_.profile;
    double level = 1;
    if (size_t(join.from) < profile.lineLevels.size() && profile.activeLevel > 0) {
        level = std::min(1.0, double(profile.lineLevels[size_t(join.from)]) / double(profile.activeLevel));
    }
    return heldPulse + cutOffLevel * level + (join.isPhrase ? 0 : withinPhrase);
}

std::optional<Filling> LengthFit::find(std::span<const Join> joins, double shortSec) const {
    std::optional<Filling> best;
    double least = 0;
    // What it adds to a jump that is there anyway is what counts.
    const auto offer = [&](const Filling& filling) {
        const Join& join = joins[filling.join];
        const double spared = join.from == join.to ? 0 : jumps_.cost(join.from, join.to).value_or(0);
        if (best && filling.cost - spared >= least) { return; }
        best = filling;
        least = filling.cost - spared;
    };
    for (size_t i = 0; i < joins.size(); ++i) {
        const Join& join = joins[i];
        const int most = beatsWithin(join.to, shortSec);
        if (most > 0 && shortSec - beatsSec(join.to, most) <= lengthTolerance) {
            if (const auto cost = entryCost(join, most)) { offer({i, most, 0, *cost}); }
        }
        const double stop = pauseCost(join);
        if (join.isFirst || stop > mostForAPause + 1e-9) { continue; }
        // After a pause any beat may enter, but not one that has just been heard.
        for (int beats = 0; beats <= (join.from == join.to ? 0 : most); ++beats) {
            const double pause = shortSec - beatsSec(join.to, beats);
            if (pause < shortestPause || pause > longestPause) { continue; }
            offer({i, beats, pause, stop + heldBar * pause / piece_.nominalBarSec + (beats > 0 ? shortBar : 0)});
        }
    }
    return best;
}

}  // namespace brindlehum::TempEditPlanner
