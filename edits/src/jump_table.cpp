// JumpTable: derives from the body's own similarities how alike bars must be for a jump.
#include <algorithm>
#include <cstdlib>

#include "edits/temp_edit_planner.h"

namespace brindlehum::TempEditPlanner {
namespace {

constexpr double minThreshold = 0.8;
constexpr double quantile = 0.85;
constexpr double seamCeiling = 0.1;
constexpr double unknownSeam = 0.9;  // assumed similarity of a loop that ends past the last bar

// The similarities of all pairs of different, non-adjacent bars in lo ..< hi, each pair once.
std::vector<double> pairsOf(const SimilarityMatrix& sim, int lo, int hi) {
    std::vector<double> out;
    if (hi - lo < 3) { return out; }
    out.reserve(size_t(hi - lo) * size_t(hi - lo) / 2);
    for (int j = lo + 2; j < hi; ++j) {
        for (int i = lo; i + 2 <= j; ++i) { out.push_back(sim.at(i, j)); }
    }
    return out;
}

}  // namespace

JumpTable::JumpTable(const SimilarityMatrix& similarity, const Pins& inForce) : sim(similarity), pins(inForce) {
    std::vector<double> pairs = pairsOf(sim, std::max(pins.introEnd, 0), std::min(sim.size, pins.endingStart));
    threshold = minThreshold;
    if (pairs.empty()) { return; }
    // The rank counts both orders of a pair.
    const auto at = pairs.begin() + ptrdiff_t(quantile * double(2 * pairs.size() - 1)) / 2;
    std::nth_element(pairs.begin(), at, pairs.end());
    threshold = std::max(minThreshold, *at);
}

std::optional<double> JumpTable::cost(int from, int to) const {
    if (from == pins.loopEnd && to == pins.loopStart && to < from) {
        return std::min(1 - (sim.contains(from, to) ? sim.at(from, to) : unknownSeam), seamCeiling);
    }
    double sum = 0;
    int count = 0;
    if (sim.contains(from, to)) {  // the bars that follow
        sum += sim.at(from, to);
        ++count;
    }
    if (sim.contains(from - 1, to - 1)) {  // the bars that come before
        sum += sim.at(from - 1, to - 1);
        ++count;
    }
    if (count == 0) { return std::nullopt; }
    const double mean = sum / count;
    if (mean >= threshold) { return 1 - mean; }
    return std::nullopt;
}

}  // namespace brindlehum::TempEditPlanner
