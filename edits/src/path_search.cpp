// PathSearch: finds a shortest path over (bars played, line), row by row.
#include "path_search.h"

#include <algorithm>
#include <limits>

namespace brindlehum::TempEditPlanner {
namespace {
constexpr double infinite = std::numeric_limits<double>::infinity();
}

PathSearch::PathSearch(const JumpTable& jumps, int from, int to)
    : jumps_(jumps), first_(from), lines_(std::max(to - from + 1, 0)) {}

// Every step through a bar ends at the line after it, so steps are stored by that line.
void PathSearch::collectSteps() {
    stepsInto_.assign(size_t(lines_), {});
    for (int line = 0; line < lines_; ++line) {
        for (int bar = 0; bar < lines_ - 1; ++bar) {
            if (bar == line) {
                stepsInto_[size_t(bar) + 1].push_back({line, 0});
                continue;
            }
            if (bar == line - 1) { continue; }
            const auto cost = jumps_.cost(first_ + line, first_ + bar);
            if (!cost) { continue; }
            double weight = *cost + jumpCost;
            if (line % phraseBars == 0 && bar % phraseBars == 0) { weight -= phraseBonus; }
            stepsInto_[size_t(bar) + 1].push_back({line, weight});
        }
    }
}

void PathSearch::grow(int count) {
    if (best_.empty()) {
        collectSteps();
        best_.assign(size_t(lines_), infinite);
        before_.assign(size_t(lines_), 0);
        best_[0] = 0;
    }
    const size_t wanted = (size_t(count) + 1) * size_t(lines_);
    size_t row = best_.size() - size_t(lines_);
    if (best_.size() < wanted) {
        best_.resize(wanted, infinite);
        before_.resize(wanted, 0);
    }
    for (; row + size_t(lines_) < wanted; row += size_t(lines_)) {
        const double* here = best_.data() + row;
        double* next = best_.data() + row + lines_;
        int32_t* nextBefore = before_.data() + row + lines_;
        for (int line = 1; line < lines_; ++line) {
            double least = infinite;
            int32_t from = 0;
            for (const Step& step : stepsInto_[size_t(line)]) {
                const double cost = here[step.from] + step.weight;
                if (cost < least) {
                    least = cost;
                    from = step.from;
                }
            }
            next[line] = least;
            nextBefore[line] = from;
        }
    }
}

// A path without bars: the two ends meet, or a jump joins them.
std::optional<PathSearch::Path> PathSearch::straight() const {
    if (lines_ == 1) { return Path{}; }
    const auto cost = jumps_.cost(first_, first_ + lines_ - 1);
    if (!cost) { return std::nullopt; }
    return Path{*cost + jumpCost, {}};
}

std::optional<PathSearch::Path> PathSearch::find(int count, bool anyEnd) {
    if (lines_ < 1 || count < 0) { return std::nullopt; }
    if (count == 0) { return straight(); }
    if (size_t(count) >= maxEntries / size_t(lines_)) { return std::nullopt; }
    grow(count);
    const int last = lines_ - 1;
    double least = at(count, last);
    int end = last;
    for (int line = 0; line < lines_ && lines_ > 1; ++line) {
        double cost = at(count, line);
        if (cost == infinite) { continue; }
        if (!anyEnd) {
            const auto jump = jumps_.cost(first_ + line, first_ + last);
            if (!jump) { continue; }
            cost += *jump + jumpCost;
        }
        if (cost < least) {
            least = cost;
            end = line;
        }
    }
    if (least == infinite) { return std::nullopt; }
    return Path{least, barsTo(count, end)};
}

std::vector<int> PathSearch::barsTo(int count, int line) const {
    auto bars = std::vector<int>(size_t(count));
    for (int played = count; played > 0; --played) {
        bars[size_t(played) - 1] = first_ + line - 1;
        line = before_[size_t(played) * size_t(lines_) + size_t(line)];
    }
    return bars;
}

}  // namespace brindlehum::TempEditPlanner
