// What surfaces read from the player: names, offers, texts and the volume.
#include <gmock/gmock.h>

#include <cmath>
#include <limits>

#include "playback_fixture.h"

namespace brindlehum {
namespace {

using testing::ElementsAre;
using testing::StartsWith;
using Player = test::PlayerTest;

TEST_F(Player, LaneLabelsNameTheChannels) {
    const struct {
        int channels;
        std::optional<SourceFormat> format;
        std::vector<std::string> labels;
    } cases[] = {
        {1, {}, {""}},
        {2, {}, {"L", "R"}},
        {4, SourceFormat::ambisonic(1, AmbiNorm::sn3d), {"W", "Y", "Z", "X"}},
        {4, SourceFormat::ambisonic(1, AmbiNorm::fuma), {"W", "X", "Y", "Z"}},
        {9, SourceFormat::ambisonic(2, AmbiNorm::n3d), {"W", "Y", "Z", "X", "4", "5", "6", "7", "8"}},
        {3, SourceFormat::discrete(3), {"1", "2", "3"}},
        {8, SourceFormat::speakers(speakers(LayoutID::l71)), {"L", "R", "C", "LFE", "Lss", "Rss", "Lrs", "Rrs"}},
    };
    EXPECT_TRUE(player_->laneLabels().empty());
    for (const auto& c : cases) {
        load(file(std::to_string(c.channels) + ".wav", c.channels, 100));
        player_->setFormatOverride(c.format);
        EXPECT_EQ(player_->laneLabels(), c.labels) << c.channels << " channels";
    }
}

TEST_F(Player, AnUpmixIsOfferedWhereItFillsSpeakers) {
    load(file("a.wav"));
    EXPECT_FALSE(player_->canUpmix()) << "stereo on stereo";
    use("Headphones");
    EXPECT_TRUE(player_->canUpmix());
    use("Room 9.1.6");
    EXPECT_TRUE(player_->canUpmix());
    player_->setFormatOverride(SourceFormat::discrete(2));
    EXPECT_FALSE(player_->canUpmix());

    UpmixSettings upmix{true, UpmixPreset::hall, params(UpmixPreset::hall)};
    player_->setUpmix(upmix);
    EXPECT_EQ(settings_.value().upmix, upmix) << "kept for the day it can be heard";
    player_->setFormatOverride({});
    play();
    EXPECT_EQ(heardFrom(), 0) << "and the sound is as without it";
}

TEST_F(Player, ADragDeliversTheFileItself) {
    EXPECT_FALSE(player_->exportForDrag(false));
    const auto a = file("a.wav");
    load(a);
    EXPECT_EQ(player_->exportForDrag(false), a);
    EXPECT_EQ(player_->exportForDrag(true), a) << "no selection, so the whole";
    EXPECT_THAT(player_->dragOptions(), ElementsAre(DragExport::original));
    player_->select(FrameRange{0, 24000});
    EXPECT_FALSE(player_->exportForDrag(true));
    EXPECT_THAT(message(), StartsWith("Dragging a selection"));
}

TEST_F(Player, VolumeIsAGainWithAFloor) {
    const struct {
        double db, gain;
    } cases[] = {{0, 1}, {-20, 0.1}, {6, std::pow(10, 0.3)}, {-59.9, std::pow(10, -59.9 / 20)}, {-60, 0}, {-1e9, 0}};
    for (const auto& c : cases) {
        player_->setVolumeDB(c.db);
        EXPECT_DOUBLE_EQ(engine_.ctx().gain(), c.gain) << c.db << " dB";
    }
    player_->setVolumeDB(std::nan(""));
    EXPECT_EQ(player_->volumeDB(), -1e9);
}

TEST(PlayerTime, IsMinutesSecondsAndThousandths) {
    const struct {
        double seconds;
        const char* text;
    } cases[] = {
        {0, "0:00.000"},       {1.5, "0:01.500"},          {59.9994, "0:59.999"},
        {59.9996, "1:00.000"}, {61.001, "1:01.001"},       {3600, "60:00.000"},
        {-0.001, "0:00.000"},  {std::nan(""), "0:00.000"}, {std::numeric_limits<double>::infinity(), "0:00.000"},
    };
    for (const auto& c : cases) { EXPECT_EQ(PlayerModel::time(c.seconds), c.text); }
}

}  // namespace
}  // namespace brindlehum
