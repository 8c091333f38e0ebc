// PathSearch: finds the cheapest way to play a number of bars from one bar line of a piece to another.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "edits/temp_edit_planner.h"

namespace brindlehum::TempEditPlanner {

// Every jump costs 0.3 more than JumpTable's cost, so that two jumps are rarely better than one, and 0.05 less between
// lines of 4-bar phrases counted from the first line. Jumps that would repeat the bar just played are left out.
//
// One table holds the best cost after k bars at each line and serves all lengths; it grows with the longest length
// searched. O(bars x jumps) time, O(bars x lines) memory. Not shared between threads.
class PathSearch {
public:
    static constexpr double jumpCost = 0.3;
    static constexpr double phraseBonus = 0.05;
    static constexpr int phraseBars = 4;
    // The largest table in entries, about 400 MB; longer paths, hours of playing, aren't searched.
    static constexpr size_t maxEntries = size_t(1) << 25;

    // `from` and `to` are bar lines, from <= to. `jumps` is borrowed.
    PathSearch(const JumpTable& jumps, int from, int to);

    struct Path {
        double cost = 0;
        std::vector<int> bars;  // in playing order
    };
    // A path of exactly `count` bars from `from` to `to`, or to anywhere with `anyEnd`. Of paths with equal cost,
    // prefers one that arrives without a jump, then one from the lowest line, compared from the end backward.
    std::optional<Path> find(int count, bool anyEnd);

private:
    struct Step {
        int32_t from = 0;   // line where the step starts, counted from the first line
        double weight = 0;  // cost of the jump, 0 for playing on
    };
    void collectSteps();
    void grow(int count);
    double at(int played, int line) const { return best_[size_t(played) * size_t(lines_) + size_t(line)]; }
    std::optional<Path> straight() const;
    std::vector<int> barsTo(int count, int line) const;

    const JumpTable& jumps_;
    int first_;
    int lines_;
    std::vector<std::vector<Step>> stepsInto_;  // by the line where they arrive, sorted by the line where they start
    std::vector<double> best_;                  // rows of lines_ by bars played; infinite where no path arrives
    std::vector<int32_t> before_;               // the line before the last bar
};

}  // namespace brindlehum::TempEditPlanner
