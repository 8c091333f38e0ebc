// The speaker vocabulary against its published positions, and the properties that every layout must have.
#include "audio/speakers/speakers.h"

#include <gtest/gtest.h>

#include "audio/speakers/source_format.h"

namespace brindlehum {
namespace {

using enum SpeakerID;

// ITU-R BS.2051 gives a range for each of these positions.
TEST(Speakers, PositionsLieWithinTheBroadcastStandard) {
    struct Range {
        SpeakerID speaker;
        double azLow, azHigh, elLow = 0, elHigh = 0;
    };
    for (const Range& r : {Range{L, 30, 30},
                           {C, 0, 0},
                           {Ls, 85, 110},
                           {Lrs, 120, 150},
                           {Lw, 55, 60},
                           {Cs, 180, 180},
                           {Ltf, 30, 45, 30, 55},
                           {Ltr, 110, 135, 30, 55},
                           {Tc, 0, 0, 90, 90}}) {
        const Direction d = direction(r.speaker, speakers(LayoutID::l916));
        EXPECT_TRUE(d.az >= r.azLow && d.az <= r.azHigh && d.el >= r.elLow && d.el <= r.elHigh) << rawValue(r.speaker);
    }
    EXPECT_EQ(direction(Ltm, {}), (Direction{90, 60}));
    EXPECT_EQ(direction(LFE, {}), direction(C, {}));
}

TEST(Speakers, SurroundsStandAtTheSideWhereRearSpeakersExist) {
    for (const SpeakerList& list : {SpeakerList{Lrs}, SpeakerList{Rrs}, speakers(LayoutID::l71)}) {
        EXPECT_EQ(direction(Ls, list), (Direction{90, 0}));
        EXPECT_EQ(direction(Rs, list), (Direction{-90, 0}));
        EXPECT_EQ(label(Ls, list), "Lss");
    }
    EXPECT_EQ(direction(Ls, speakers(LayoutID::l514)), (Direction{110, 0}));
    EXPECT_EQ(label(Rs, speakers(LayoutID::l51)), "Rs");
}

TEST(Directions, AnglesAreGreatCircles) {
    EXPECT_NEAR((Direction{30, 0}.angle({-30, 0})), 60, 1e-9);
    EXPECT_NEAR((Direction{0, 45}.angle({90, 45})), 60, 1e-9);
    for (const SpeakerID s : speakers(LayoutID::l916)) {
        EXPECT_LT(direction(s, {}).angle(Direction::fromVector(direction(s, {}).unitVector())), 1e-5) << rawValue(s);
    }
    EXPECT_GT((Direction{90, 0}.unitVector()[1]), 0.99) << "left is positive y";
}

TEST(SourceFormats, AreOfferedByChannelCount) {
    const std::pair<int, std::vector<std::string>> offers[] = {
        {0, {}},
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

TEST(SourceFormat, KeepsItsMeaningInText) {
    for (int channels = 1; channels <= 16; ++channels) {
        for (const auto& made : {SourceFormat::options(channels), SourceFormat::waveOrders(channels)}) {
            for (const auto& format : made) {
                EXPECT_EQ(format.channels(), channels) << format.displayName();
                EXPECT_EQ(sourceFormatFromRaw(rawValue(format)), format) << rawValue(format);
            }
        }
    }
    for (const char* text : {"", "speakers L Q", "discrete 0", "discrete 2x", "ambisonic 1", "ambisonic 4 sn3d"}) {
        EXPECT_FALSE(sourceFormatFromRaw(text)) << text;
    }
}

}  // namespace
}  // namespace brindlehum
