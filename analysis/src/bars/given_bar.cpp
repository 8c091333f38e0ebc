#include "bars/given_bar.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace brindlehum::bars {
namespace {

// Moves all beats, and fills both ends of the piece again.
void moveBeats(MusicGrid& grid, double shift, double beat) {
    auto& beats = grid.beats;
    const double first = beats.front() + shift;
    const auto before = int64_t(std::floor(first / beat));
    for (double& t : beats) { t += shift; }
    if (grid.steady && before > 0) {
        std::vector<double> head;
        for (int64_t k = before; k > 0; --k) { head.push_back(first - double(k) * beat); }
        beats.insert(beats.begin(), head.begin(), head.end());
    }
    while (beats.back() + beat < grid.duration) { beats.push_back(beats.back() + beat); }
    std::erase_if(beats, [&](double t) { return t < 0 || t >= grid.duration; });
}

}  // namespace

void startBarAt(MusicGrid& grid, double seconds) {
    if (grid.beats.empty() || !(grid.bpm > 0)) { return; }
    const double beat = 60 / grid.bpm;
    const auto distance = [seconds](double t) { return std::abs(t - seconds); };
    const double nearest = *std::ranges::min_element(grid.beats, {}, distance);
    const double shift = std::remainder(seconds - nearest, beat);
    if (std::abs(shift) > sameBeat * beat) { moveBeats(grid, shift, beat); }
    const auto at = std::ranges::min_element(grid.beats, {}, distance);
    // The word may lie before the first beat or after the last.
    const auto further = int64_t(std::round((seconds - *at) / beat));
    const auto group = int64_t(grid.beatsPerBar);
    const int64_t place = ((at - grid.beats.begin() + further) % group + group) % group;
    grid.downbeats.clear();
    for (auto i = size_t(place); i < grid.beats.size(); i += size_t(group)) { grid.downbeats.push_back(grid.beats[i]); }
    if (grid.downbeats.empty()) { grid.downbeats = {0.0}; }
    // A bar line up to 60 ms before the start of the file counts as its start.
    const double early = grid.downbeats[0] - double(group) * beat;
    if (early < 0 && early >= -0.06) { grid.downbeats.insert(grid.downbeats.begin(), 0.0); }
    grid.downbeatConfidence = 1;
}

}  // namespace brindlehum::bars
