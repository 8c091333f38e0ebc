// Channels to speakers: the fold-down table, routing rules, and properties over all layouts and sources.
#include "spatial/layout_matrix.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "sphere.h"

namespace brindlehum {
namespace {

using enum SpeakerID;
using test::mirrored;

constexpr double g3 = 0.7071;

Matrix toLayout(const SourceFormat& source, int channels, const SpeakerList& target,
                ListenMode listen = ListenMode::normal, bool monoToCenter = false) {
    return MixBuilder::layoutMatrix(source, channels, target, listen, {}, monoToCenter);
}

TEST(StereoGains, FoldEverySpeakerAsPublished) {
    struct Row {
        SpeakerID speaker;
        double left;
        double right;
    };
    const Row table[] = {{L, 1, 0},          {C, g3, g3},        {Lc, 0.9239, 0.3827}, {Lw, 1, 0},
                         {Ls, g3, 0},        {Lrs, g3, 0},       {Cs, 0.5, 0.5},       {Ltf, g3, 0},
                         {Ltr, 0.499990, 0}, {Ltm, 0.499990, 0}, {Tc, 0.5, 0.5}};
    const SpeakerList contexts[] = {{}, speakers(LayoutID::l714)};
    for (const Row& row : table) {
        for (const SpeakerList& in : contexts) {
            const auto [l, r] = MixBuilder::stereoGains(direction(row.speaker, in));
            EXPECT_NEAR(l, row.left, 5e-5) << rawValue(row.speaker);
            EXPECT_NEAR(r, row.right, 5e-5) << rawValue(row.speaker);
            const auto [ml, mr] = MixBuilder::stereoGains(direction(mirrored(row.speaker), in));
            EXPECT_NEAR(ml, r, 1e-12) << rawValue(row.speaker);
            EXPECT_NEAR(mr, l, 1e-12) << rawValue(row.speaker);
        }
    }
    // Rear and height count from 60.5 and 20 degrees.
    EXPECT_NEAR(MixBuilder::stereoGains({60, 20}).first, 1, 1e-12);
    EXPECT_NEAR(MixBuilder::stereoGains({61, 0}).first, g3, 1e-12);
    EXPECT_NEAR(MixBuilder::stereoGains({60, 20.5}).first, g3, 1e-12);
    EXPECT_NEAR(MixBuilder::stereoGains({165, 0}).first, g3 * std::cos(std::numbers::pi / 8), 1e-12);
}

TEST(Nearest, OfMirroredSpeakersTheFirstWinsWhateverTheRounding) {
    const SpeakerList& l714 = speakers(LayoutID::l714);
    const auto place = [&](SpeakerID speaker) { return int(std::ranges::find(l714, speaker) - l714.begin()); };
    const SpeakerList& l712 = speakers(LayoutID::l712);
    EXPECT_EQ(MixBuilder::nearest(direction(Ltm, l712), l714), place(Ltf));
    EXPECT_EQ(MixBuilder::nearest(direction(Rtm, l712), l714), place(Rtf));
}

TEST(Nearest, GoesByAngleAndLeavesOutTheLFE) {
    const SpeakerList& l51 = speakers(LayoutID::l51);
    const SpeakerList& l71 = speakers(LayoutID::l71);
    struct Case {
        Direction d;
        SpeakerList in;
        std::optional<int> expected;
    };
    const Case cases[] = {{{0, 0}, {LFE, R, C}, 2}, {{135, 0}, l51, 4}, {{180, 0}, l51, 4},
                          {{45, 45}, l71, 0},       {{90, 60}, l71, 4}, {{10, 0}, {LFE}, std::nullopt}};
    for (const Case& c : cases) { EXPECT_EQ(MixBuilder::nearest(c.d, c.in), c.expected) << c.d.az << " " << c.d.el; }
}

// Entries as "target row <- source channel x gain"; everything else must be 0.
struct Gain {
    size_t row;
    size_t channel;
    double gain;
};

TEST(LayoutMatrix, RoutesSpecialCases) {
    struct Case {
        const char* name;
        Matrix matrix;
        std::vector<Gain> gains;
    };
    const SpeakerList l51 = speakers(LayoutID::l51);
    const SpeakerList l71 = speakers(LayoutID::l71);
    const SpeakerList l714 = speakers(LayoutID::l714);
    const SpeakerList pair = {L, R};
    const auto mono = SourceFormat::mono();
    const auto stereo = SourceFormat::stereo();
    const auto film = SourceFormat::speakers(*filmOrder(LayoutID::l51));
    const Case cases[] = {
        {"mono to C", toLayout(mono, 1, l51, ListenMode::normal, true), {{2, 0, 1}}},
        {"mono as a phantom centre", toLayout(mono, 1, l51), {{0, 0, g3}, {1, 0, g3}}},
        {"stereo in mono on 7.1.4",
         toLayout(stereo, 2, l714, ListenMode::mono),
         {{0, 0, .5}, {0, 1, .5}, {1, 0, .5}, {1, 1, .5}}},
        {"right only", toLayout(stereo, 2, l51, ListenMode::right), {{0, 1, 1}, {1, 1, 1}}},
        {"mid and side",
         toLayout(stereo, 2, pair, ListenMode::midSide),
         {{0, 0, g3}, {0, 1, g3}, {1, 0, g3}, {1, 1, -g3}}},
        {"stereo on a swapped pair", toLayout(stereo, 2, {R, L}), {{1, 0, 1}, {0, 1, 1}}},
        {"stereo on one speaker", toLayout(stereo, 2, {C}), {{0, 0, 1}, {0, 1, 1}}},
        {"7.1 on 5.1: both surrounds at full gain",
         toLayout(SourceFormat::speakers(l71), 8, l51),
         {{0, 0, 1}, {1, 1, 1}, {2, 2, 1}, {3, 3, 1}, {4, 4, 1}, {5, 5, 1}, {4, 6, 1}, {5, 7, 1}}},
        {"5.1 Film on a pair, whatever the listen mode",
         toLayout(film, 6, pair, ListenMode::mono),
         {{0, 0, 1}, {0, 1, g3}, {1, 1, g3}, {1, 2, 1}, {0, 3, g3}, {1, 4, g3}}},
        {"5.1 Film on 5.1", toLayout(film, 6, l51), {{0, 0, 1}, {2, 1, 1}, {1, 2, 1}, {4, 3, 1}, {5, 4, 1}, {3, 5, 1}}},
        {"more channels than speakers",
         toLayout(SourceFormat::speakers({L, R, C}), 5, l51),
         {{0, 0, 1}, {1, 1, 1}, {2, 2, 1}}},
        {"discrete in a wider room", toLayout(SourceFormat::discrete(3), 3, l51), {{0, 0, 1}, {1, 1, 1}, {2, 2, 1}}},
    };
    for (const Case& c : cases) {
        Matrix expected = c.matrix;
        for (auto& row : expected) { std::ranges::fill(row, 0.0); }
        for (const Gain& g : c.gains) { expected.at(g.row).at(g.channel) = g.gain; }
        for (size_t r = 0; r < expected.size(); ++r) {
            for (size_t i = 0; i < expected[r].size(); ++i) {
                EXPECT_NEAR(c.matrix[r][i], expected[r][i], 5e-5) << c.name << ": row " << r << ", channel " << i;
            }
        }
    }
}

// Every source on every layout: numbers are finite, speaker sources never inverted, no full-range speaker is lost,
// and left and right are treated alike.
TEST(LayoutMatrix, IsFiniteAndSymmetricAndLosesNoSpeaker) {
    std::vector<std::pair<SourceFormat, int>> sources;
    for (int channels = 1; channels <= 16; ++channels) {
        for (const auto& format : SourceFormat::options(channels)) { sources.emplace_back(format, channels); }
    }
    sources.emplace_back(SourceFormat::speakers({L, R, C, Lc, Rc, Cs, Tc, Lw, Rw, LFE}), 10);
    for (const auto& [format, channels] : sources) {
        for (LayoutID layout : allLayouts) {
            SCOPED_TRACE(format.displayName() + " on " + std::string(displayName(layout)));
            const SpeakerList& target = speakers(layout);
            const Matrix m = toLayout(format, channels, target);
            ASSERT_EQ(m.size(), target.size());
            for (const auto& row : m) {
                ASSERT_EQ(row.size(), size_t(channels));
                for (double gain : row) {
                    ASSERT_TRUE(std::isfinite(gain));
                    ASSERT_TRUE(gain >= 0 || !format.asSpeakers());
                }
            }
            const SpeakerList* list = format.asSpeakers();
            if (!list) { continue; }
            for (size_t c = 0; c < list->size(); ++c) {
                double sum = 0;
                const auto twin = size_t(std::ranges::find(*list, mirrored((*list)[c])) - list->begin());
                for (size_t r = 0; r < target.size(); ++r) {
                    sum += m[r][c];
                    const auto other = size_t(std::ranges::find(target, mirrored(target[r])) - target.begin());
                    // Cs and Tc are on no side: the first of two equally near speakers gets them.
                    if ((*list)[c] != Cs && (*list)[c] != Tc) {
                        EXPECT_NEAR(m[r][c], m[other][twin], 1e-12) << rawValue((*list)[c]);
                    }
                }
                if ((*list)[c] != LFE) { EXPECT_GE(sum, 0.4999) << rawValue((*list)[c]) << " is lost"; }
            }
        }
    }
}

}  // namespace
}  // namespace brindlehum
