// The speaker vocabulary against its published positions, and the properties that every layout must have.
#include "audio/speakers/speakers.h"

#include <gtest/gtest.h>

#include <set>

#include "audio/speakers/source_format.h"

namespace brindlehum {
namespace {

using enum SpeakerID;

SpeakerList everySpeaker() {
    SpeakerList out;
    for (int i = 0; i < speakerCount; ++i) { out.push_back(static_cast<SpeakerID>(i)); }
    return out;
}

// ITU-R BS.2051 gives a range for each of these positions.
TEST(Speakers, PositionsLieWithinTheBroadcastStandard) {
    struct Range {
        SpeakerID speaker;
        double azLow, azHigh, elLow, elHigh;
    };
    const Range ranges[] = {{L, 30, 30, 0, 0},       {C, 0, 0, 0, 0},      {Ls, 85, 110, 0, 0},
                            {Lrs, 120, 150, 0, 0},   {Lw, 55, 60, 0, 0},   {Ltf, 30, 45, 30, 55},
                            {Ltr, 110, 135, 30, 55}, {Cs, 180, 180, 0, 0}, {Tc, 0, 0, 90, 90}};
    for (const Range& r : ranges) {
        const Direction d = direction(r.speaker, speakers(LayoutID::l916));
        EXPECT_TRUE(d.az >= r.azLow && d.az <= r.azHigh && d.el >= r.elLow && d.el <= r.elHigh) << rawValue(r.speaker);
    }
    EXPECT_EQ(direction(Ltm, {}), (Direction{90, 60}));
    EXPECT_EQ(direction(Rc, {}), (Direction{-15, 0}));
    EXPECT_EQ(direction(LFE, {}), direction(C, {}));
}

TEST(Speakers, SurroundsStandAtTheSideWhereRearSpeakersExist) {
    for (const SpeakerList& list : {SpeakerList{Lrs}, SpeakerList{Rrs}, speakers(LayoutID::l71)}) {
        EXPECT_EQ(direction(Ls, list), (Direction{90, 0}));
        EXPECT_EQ(direction(Rs, list), (Direction{-90, 0}));
        EXPECT_EQ(label(Ls, list), "Lss");
        EXPECT_EQ(label(Rs, list), "Rss");
        EXPECT_EQ(label(Lrs, list), "Lrs");
    }
    EXPECT_EQ(direction(Ls, speakers(LayoutID::l514)), (Direction{110, 0}));
    EXPECT_EQ(label(Rs, speakers(LayoutID::l51)), "Rs");
}

TEST(Speakers, RawValuesReadBackAndUnknownOnesDoNot) {
    std::set<std::string_view> names;
    for (const SpeakerID s : everySpeaker()) {
        EXPECT_EQ(speakerFromRaw(rawValue(s)), s);
        names.insert(rawValue(s));
    }
    EXPECT_EQ(names.size(), size_t(speakerCount));
    for (const LayoutID layout : allLayouts) { EXPECT_EQ(layoutFromRaw(rawValue(layout)), layout); }
    for (const AmbiNorm norm : {AmbiNorm::sn3d, AmbiNorm::n3d, AmbiNorm::fuma}) {
        EXPECT_EQ(ambiNormFromRaw(rawValue(norm)), norm);
    }
    for (const std::string_view raw : {"", "l", "Lss", "l511", "Stereo", "SN3D"}) {
        EXPECT_FALSE(speakerFromRaw(raw)) << raw;
        EXPECT_FALSE(layoutFromRaw(raw)) << raw;
        EXPECT_FALSE(ambiNormFromRaw(raw)) << raw;
    }
}

TEST(Speakers, LayoutsHoldTheSpeakersThatTheirNamesCount) {
    const std::pair<LayoutID, std::array<size_t, 3>> counts[] = {
        // ear level, LFE, top
        {LayoutID::stereo, {2, 0, 0}}, {LayoutID::l51, {5, 1, 0}},  {LayoutID::l71, {7, 1, 0}},
        {LayoutID::l514, {5, 1, 4}},   {LayoutID::l712, {7, 1, 2}}, {LayoutID::l714, {7, 1, 4}},
        {LayoutID::l916, {9, 1, 6}}};
    for (const auto& [layout, expected] : counts) {
        std::array<size_t, 3> found{};
        for (const SpeakerID s : speakers(layout)) { ++found[s == LFE ? 1 : direction(s, {}).el > 0 ? 2 : 0]; }
        EXPECT_EQ(found, expected) << displayName(layout);
        const SpeakerList* film = filmOrder(layout);
        if (!film) { continue; }
        EXPECT_TRUE(std::ranges::is_permutation(*film, speakers(layout)));
        EXPECT_EQ(film->at(1), C);
    }
}

TEST(Directions, AnglesAreGreatCircles) {
    EXPECT_NEAR((Direction{30, 0}.angle({-30, 0})), 60, 1e-9);
    EXPECT_NEAR((Direction{0, 0}.angle({180, 0})), 180, 1e-9);
    EXPECT_NEAR((Direction{-77, 90}.angle({12, 0})), 90, 1e-9);
    EXPECT_NEAR((Direction{0, 45}.angle({90, 45})), 60, 1e-9);
    EXPECT_EQ((Direction{110, 0}.angle({110, 0})), 0);
    for (const SpeakerID s : everySpeaker()) {
        const Direction d = direction(s, {});
        EXPECT_LT(d.angle(Direction::fromVector(d.unitVector())), 1e-5) << rawValue(s);
    }
    EXPECT_GT((Direction{90, 0}.unitVector()[1]), 0.99) << "left is positive y";
}

TEST(SourceFormats, AreOfferedByChannelCount) {
    const std::pair<int, std::vector<std::string>> offers[] = {
        {-1, {}},
        {0, {}},
        {1, {"Mono"}},
        {2, {"Stereo", "2-ch discrete"}},
        {3, {"3-ch discrete"}},
        {4, {"Quad", "AmbiX 1st order", "FuMa 1st order", "4-ch discrete"}},
        {6, {"5.1", "5.1 Film", "6-ch discrete"}},
        {8, {"7.1", "7.1 Film", "8-ch discrete"}},
        {9, {"AmbiX 2nd order", "ACN/N3D 2nd order", "9-ch discrete"}},
        {10, {"7.1.2", "5.1.4", "10-ch discrete"}},
        {12, {"7.1.4", "7.1.4 Film", "12-ch discrete"}},
        {16, {"9.1.6", "AmbiX 3rd order", "ACN/N3D 3rd order", "16-ch discrete"}},
        {64, {"64-ch discrete"}},
    };
    for (const auto& [channels, expected] : offers) {
        std::vector<std::string> names;
        for (const SourceFormat& format : SourceFormat::options(channels)) { names.push_back(format.displayName()); }
        EXPECT_EQ(names, expected) << channels;
    }
}

}  // namespace
}  // namespace brindlehum
