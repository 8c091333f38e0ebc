// The binaural stage against time-domain convolution with the responses of its set.
#include "mix/render/binaural_stage.h"

#include <gtest/gtest.h>

#include "support/signals.h"

using brindlehum::BinauralStage;
using brindlehum::Direction;
using brindlehum::HRTFSet;
namespace test = brindlehum::test;

namespace {

using Signal = std::vector<float>;

constexpr size_t total = 4800;
constexpr size_t block = 480;
constexpr size_t change = 5 * block;

// What both ears hear of the sources at these places.
std::array<Signal, 2> convolved(const HRTFSet& set, const std::vector<Signal>& lanes,
                                const std::vector<Direction>& directions) {
    std::array<std::vector<double>, 2> sums = {std::vector<double>(total), std::vector<double>(total)};
    for (size_t i = 0; i < lanes.size(); ++i) {
        const auto impulses = set.impulses(directions[i]);
        test::convolveInto(sums[0], lanes[i], impulses.first);
        test::convolveInto(sums[1], lanes[i], impulses.second);
    }
    return {Signal(sums[0].begin(), sums[0].end()), Signal(sums[1].begin(), sums[1].end())};
}

}  // namespace

TEST(BinauralStage, EqualsTimeDomainConvolutionOfAllSourcesAndFadesWhenSomeMove) {
    const auto set = HRTFSet::shared(48000);
    std::vector<Signal> lanes;
    std::vector<Direction> directions;
    for (int i = 0; i < BinauralStage::sources; ++i) {
        lanes.push_back(test::noise(total, uint32_t(i) + 1));
        directions.push_back({i * 67 % 360 - 180.0, i * 31 % 120 - 35.0});
    }
    auto moved = directions;
    moved[0] = {90, 0};
    moved[1] = {45, 10};

    BinauralStage stage(set);
    stage.setDirections(directions);
    std::shared_ptr<const void> replaced;
    std::array<Signal, 2> ears = {Signal(total), Signal(total)};
    for (size_t at = 0; at < total; at += block) {
        if (at == change) { replaced = stage.setDirections({moved[0], moved[1]}); }
        std::vector<const float*> in;
        for (const Signal& lane : lanes) { in.push_back(lane.data() + at); }
        stage.process(in.data(), int(block), ears[0].data() + at, ears[1].data() + at);
    }
    const auto before = convolved(*set, lanes, directions);
    auto expected = convolved(*set, lanes, moved);
    for (size_t ear = 0; ear < 2; ++ear) {
        for (size_t i = 0; i < change + block; ++i) {
            const float up = i < change ? 0 : float(i - change + 1) / float(block);
            expected[ear][i] = up * expected[ear][i] + (1 - up) * before[ear][i];
        }
        EXPECT_LT(test::errorDb(ears[ear], expected[ear]), -100);
    }
}
