// PathSearch on small pieces, against a walk over all paths.
#include "path_search.h"

#include <gtest/gtest.h>

#include <random>

#include "hand_made.h"

namespace brindlehum {
namespace {

using TempEditPlanner::JumpTable;
using TempEditPlanner::PathSearch;
using Found = std::optional<PathSearch::Path>;

// The cost of a step from `line` to the start of `bar`; 0 for playing on. Lines count from `from`.
std::optional<double> stepCost(const JumpTable& jumps, int from, int line, int bar) {
    if (bar == line) { return 0; }
    if (bar == line - 1) { return std::nullopt; }
    const auto cost = jumps.cost(from + line, from + bar);
    if (!cost) { return std::nullopt; }
    const double weight = *cost + 0.3;
    return line % 4 == 0 && bar % 4 == 0 ? weight - 0.05 : weight;
}

// Walks all paths. Of two at the same cost the one without a last jump wins, then the one that is lower in cost so far
// and in line, compared from the end backward.
class AllPaths {
public:
    AllPaths(const JumpTable& jumps, int from, int to, int count, bool anyEnd)
        : jumps_(jumps), from_(from), last_(to - from), count_(count), anyEnd_(anyEnd) {
        if (count == 0) {
            const auto jump = jumps.cost(from, to);
            if (last_ == 0) { best_ = {0, {}}; }
            if (last_ > 0 && jump) { best_ = {*jump + 0.3, {}}; }
            return;
        }
        walk({{0.0, 0}});
    }
    Found best() const { return best_; }

private:
    using Walk = std::vector<std::pair<double, int>>;  // cost so far and line, a pair for each bar played and the start

    void walk(const Walk& walked) {
        const auto [cost, line] = walked.back();
        if (int(walked.size()) == count_ + 1) { return finish(walked); }
        for (int bar = 0; bar < last_; ++bar) {
            const auto step = stepCost(jumps_, from_, line, bar);
            if (!step) { continue; }
            Walk further = walked;
            further.emplace_back(cost + *step, bar + 1);
            walk(further);
        }
    }
    void finish(const Walk& walked) {
        const auto [cost, line] = walked.back();
        if (line == last_) { offer(cost, -1, walked); }
        if (anyEnd_) { offer(cost, line, walked); }
        const auto jump = jumps_.cost(from_ + line, from_ + last_);
        if (!anyEnd_ && jump) { offer(cost + (*jump + 0.3), line, walked); }
    }
    void offer(double total, int ending, const Walk& walked) {
        std::vector<double> rank = {total, double(ending)};
        for (size_t i = walked.size(); i-- > 0;) {
            rank.push_back(walked[i].first);
            if (i > 0) { rank.push_back(walked[i - 1].second); }
        }
        if (best_ && !(rank < rank_)) { return; }
        rank_ = rank;
        best_ = {total, {}};
        for (size_t i = 1; i < walked.size(); ++i) { best_->bars.push_back(from_ + walked[i].second - 1); }
    }
    const JumpTable& jumps_;
    int from_, last_, count_;
    bool anyEnd_;
    Found best_;
    std::vector<double> rank_;
};

void expectSame(const Found& got, const Found& expected, const std::string& what) {
    ASSERT_EQ(got.has_value(), expected.has_value()) << what;
    if (!got) { return; }
    EXPECT_EQ(got->cost, expected->cost) << what;
    EXPECT_EQ(got->bars, expected->bars) << what;
}

TEST(PathSearch, FindsTheBestOfAllPaths) {
    const uint32_t seed = std::random_device{}();
    std::mt19937 random(seed);
    for (int round = 0; round < 120; ++round) {
        const int from = int(random() % 3);
        const int to = from + int(random() % 6);
        test::HandMade piece(to + int(random() % 3));
        const bool few = round % 2 == 0;  // values, so that many paths cost the same
        piece.alike([&](int, int) { return few ? double(random() % 5 + 6) / 10 : 0.5 + double(random()) / 8.6e9; });
        Pins pins{0, from, from, to - int(random() % 2), to};
        const JumpTable jumps(piece.structure.similarity, pins);
        PathSearch search(jumps, from, to);
        // Not in ascending order: the table is used again and grows in between.
        for (const int count : {3, 0, 5, 1, 4, 2, 6}) {
            for (const bool anyEnd : {false, true}) {
                expectSame(search.find(count, anyEnd), AllPaths(jumps, from, to, count, anyEnd).best(),
                           "seed " + std::to_string(seed) + ", round " + std::to_string(round) + ", " +
                               std::to_string(count) + " bars" + (anyEnd ? ", any end" : ""));
            }
        }
    }
}

TEST(PathSearch, FindsNoPathBeyondItsLimits) {
    test::HandMade piece(20);
    piece.alike([](int i, int j) { return (j - i) % 4 == 0 ? 0.9 : 0.1; });
    const JumpTable jumps(piece.structure.similarity, Pins{0, 2, 2, 18, 18});
    PathSearch search(jumps, 2, 18);
    EXPECT_FALSE(search.find(15, false)) << "no jump changes the count by anything but fours";
    EXPECT_FALSE(search.find(-1, false));
    EXPECT_FALSE(search.find(1 << 30, false)) << "a table beyond memory";
    EXPECT_FALSE(PathSearch(jumps, 5, 4).find(0, true));
    EXPECT_EQ(PathSearch(jumps, 4, 4).find(0, false)->bars.size(), 0U);
    EXPECT_FALSE(PathSearch(jumps, 4, 4).find(1, true));
}

}  // namespace
}  // namespace brindlehum
