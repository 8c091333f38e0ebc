// SpeakerMap: speakers go where the device calls them by name, and the profile that fits is found.
#include "mix/config/speaker_map.h"

#include <gtest/gtest.h>

namespace brindlehum {
namespace {

using Names = std::vector<std::string>;
using enum LayoutID;

AudioOutputDevice device(int channels, Names positions = {}) {
    return {7, "uid", "Pair", channels, std::move(positions)};
}

OutputProfile profile(LayoutID layout, std::vector<int> outputs, bool follows = false) {
    OutputProfile made;
    made.name = "Room";
    made.layout = layout;
    made.outputs = std::move(outputs);
    made.followsPositions = follows;
    return made;
}

TEST(SpeakerMap, SpeakersGoToTheChannelsOfTheirNames) {
    const Names twelve = {"FL", "FR", "FC", "LFE", "RL", "RR", "SL", "SR", "TFL", "TFR", "TRL", "TRR"};
    const struct {
        LayoutID layout;
        Names positions;
        std::vector<int> map;
    } cases[] = {
        {l714, twelve, {0, 1, 2, 3, 6, 7, 4, 5, 8, 9, 10, 11}},
        {l51, twelve, {0, 1, 2, 3, 6, 7}},
        {l51, {"FL", "FR", "RL", "RR", "FC", "LFE"}, {0, 1, 4, 5, 2, 3}},
        {stereo, {"FR", "FL"}, {1, 0}},
        // What a device lacks lies past its end.
        {l71, {"FL", "FR", "RL", "RR", "FC", "LFE"}, {0, 1, 4, 5, 6, 7, 2, 3}},
        {l51, {"MONO"}, {}},
        {stereo, {"AUX0", "AUX1"}, {}},
        {stereo, {}, {}},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(SpeakerMap::byPosition(c.layout, c.positions).value_or(std::vector<int>()), c.map);
    }
}

TEST(SpeakerMap, OnlyAProfileThatFollowsPositionsIsMappedByThem) {
    const Names swapped = {"FR", "FL"};
    EXPECT_EQ(SpeakerMap::outputs(profile(stereo, {0, 1}, true), swapped), (std::vector{1, 0}));
    EXPECT_EQ(SpeakerMap::outputs(profile(stereo, {0, 1}), swapped), (std::vector{0, 1}));
    EXPECT_EQ(SpeakerMap::outputs(profile(stereo, {4}, true), {"AUX0", "AUX1"}), (std::vector{4, 1}));
    for (const OutputProfile& factory : OutputProfile::defaults()) { EXPECT_TRUE(factory.followsPositions); }
}

TEST(SpeakerMap, TheWarningCountsInPlainGrammar) {
    OutputProfile headphones = profile(stereo, {});
    headphones.kind = OutputProfile::Kind::headphones;
    const struct {
        OutputProfile profile;
        int channels;
        const char* text;
    } cases[] = {
        {profile(l916, {}), 2, "Room needs 16 outputs, Pair has 2: 14 speakers are not heard"},
        {profile(stereo, {0, 1}), 1, "Room needs 2 outputs, Pair has 1: 1 speaker is not heard"},
        {profile(stereo, {-1, 9}), 2, "Room needs 10 outputs, Pair has 2: 1 speaker is not heard"},
        {headphones, 1, "Room needs 2 outputs, Pair has 1: 1 side is not heard"},
        {profile(l51, {0, 1, -1, -1, -1, -1}), 2, ""},
        {profile(l916, {}), 16, ""},
    };
    for (const auto& c : cases) { EXPECT_EQ(SpeakerMap::warning(c.profile, device(c.channels)), c.text); }
}

TEST(SpeakerMap, TheFittingProfileLosesNoSpeakerAndUsesMost) {
    std::vector<OutputProfile> profiles = OutputProfile::defaults();
    const auto fitting = [&](std::vector<AudioOutputDevice> devices) {
        const OutputProfile* found = SpeakerMap::fitting(profiles, devices, 7);
        return found ? found->name : "(none)";
    };
    for (const auto& [channels, name] :
         {std::pair(1, "Nearfield"), {2, "Nearfield"}, {12, "Nearfield"}, {16, "Room 9.1.6"}, {24, "Room 9.1.6"}}) {
        EXPECT_EQ(fitting({device(channels)}), name) << channels;
    }
    EXPECT_EQ(fitting({}), "(none)");
    profiles[0].deviceUID = "large";
    EXPECT_EQ(fitting({device(2), {8, "large", "Large", 16}}), "Room 9.1.6") << "on its own device";
}

}  // namespace
}  // namespace brindlehum
