// PieceLines: the bar lines of a piece in seconds and in frames, shared by all plans.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "analysis/grid/music_grid.h"
#include "analysis/structure/pins.h"

namespace brindlehum::TempEditPlanner {

// "b8": how texts for the user name a bar.
inline std::string barText(int number) {
    std::string out(1, 'b');
    out += std::to_string(number);
    return out;
}

class PieceLines {
public:
    PieceLines(const MusicGrid& grid, const Pins& inForce, std::optional<int> fade, double sampleRate, int64_t frames)
        : pins(inForce),
          fadeStart(fade),
          rate(sampleRate),
          totalFrames(frames),
          startFrame(std::min(frames, int64_t(std::llround(sampleRate * inForce.startTime)))),
          nominalBarSec(60 / grid.bpm * grid.beatsPerBar),
          firstDownbeat(grid.downbeats.empty() ? 0 : grid.downbeats.front()),
          bounds_(grid.boundaries()) {}

    const Pins pins;
    const std::optional<int> fadeStart;  // the line from which the piece fades out
    const double rate;                   // Hz
    const int64_t totalFrames;
    const int64_t startFrame;    // after the silent head
    const double nominalBarSec;  // by the tempo
    const double firstDownbeat;  // seconds

    int count() const { return int(bounds_.size()); }
    // A line past the last one counts as the last one.
    double seconds(int line) const { return bounds_[size_t(std::clamp(line, 0, count() - 1))]; }
    int64_t frame(int line) const { return frameAt(seconds(line)); }
    int64_t frameAt(double time) const { return std::clamp<int64_t>(std::llround(rate * time), 0, totalFrames); }
    // The last line at or before a frame; the first one if there is none.
    int lineBefore(int64_t frameAt) const {
        int line = count() - 1;
        while (line > 0 && frame(line) > frameAt) { --line; }
        return line;
    }
    // The nearest line to a frame; the earlier of two equally near ones.
    int nearest(int64_t frameAt) const {
        int best = 0;
        for (int line = 1; line < count(); ++line) {
            if (std::llabs(frame(line) - frameAt) < std::llabs(frame(best) - frameAt)) { best = line; }
        }
        return best;
    }

    // Where the ending's sound stops: at the last line of the music, followed by up to a second of ring-out.
    int musicEnd() const { return std::max(pins.endingStart, pins.musicEnd); }
    double lastSec() const { return seconds(std::min(count() - 1, musicEnd())); }
    double tailSec() const { return std::clamp(double(totalFrames) / rate - lastSec(), 0.0, 1.0); }

private:
    std::vector<double> bounds_;
};

}  // namespace brindlehum::TempEditPlanner
