// ListeningSetup: what is chosen is heard in the running sound, and the mix of a snapshot.
#include "mix/player/listening_setup.h"

#include <cmath>

#include "playback_fixture.h"

namespace brindlehum {
namespace {

using test::Planes;
using Listening = test::PlayerTest;

TEST(ListeningMix, ListenModesAreForTwoChannels) {
    const OutputProfile nearfield = OutputProfile::defaults()[1];
    ListeningSnapshot two{SourceFormat::stereo(), 2, nearfield};
    two.listen = ListenMode::mono;
    EXPECT_EQ(listeningMix(two).config.matrix, std::vector<float>(4, 0.5F));
    ListeningSnapshot four{SourceFormat::discrete(4), 4, nearfield};
    const MixConfig plain = listeningMix(four).config;
    four.listen = ListenMode::mono;
    EXPECT_EQ(listeningMix(four).config, plain);
}

TEST(ListeningMix, WithoutAnHRTFSetBothEarsGetTheStereoFoldDown) {
    OutputProfile ears = OutputProfile::defaults()[2];
    ears.headphoneLeft = 4;
    ears.headphoneRight = 5;
    ListeningSnapshot five{SourceFormat::speakers(speakers(LayoutID::l51)), 6, ears, 16};
    EXPECT_TRUE(listeningMix(five).config.toBinaural);
    EXPECT_FALSE(listeningMix(five).standsIn);
    five.binauralMissing = true;
    const ListeningMix mix = listeningMix(five);
    EXPECT_TRUE(mix.standsIn);
    EXPECT_FALSE(mix.config.toBinaural);
    for (int row = 0; row < mix.config.rows; ++row) {
        double sum = 0;
        for (int c = 0; c < 6; ++c) { sum += double(mix.config.matrix[size_t(row * 6 + c)]); }
        EXPECT_EQ(sum > 0, row == 4 || row == 5) << row;
    }
    ListeningSnapshot two{SourceFormat::stereo(), 2, ears, 16};
    two.binauralMissing = true;
    EXPECT_FALSE(listeningMix(two).standsIn) << "stereo needs no set";
}

TEST_F(Listening, AChoiceIsHeardWithoutARestart) {
    load(file("a.wav"), true);
    audio_.pump(block);
    sound().setFormatOverride(SourceFormat::discrete(2));
    settle();
    EXPECT_EQ(heardFrom(), block) << "the stream goes on";
    sound().setFormatOverride({});
    listening().setListen(ListenMode::mono);
    const Planes heard = (audio_.pump(block), audio_.pump(block));
    EXPECT_EQ(heard[0], std::vector<float>(block, 0)) << "the channels are each other's negative";
}

TEST_F(Listening, HeadphonesWithoutAnHRTFSetPlayAndSaySo) {
    use("Headphones");
    load(file("five.wav", 6), true);
    ASSERT_TRUE(loop_.runUntil([&] { return engine_.binauralMissing(); }));
    settle();
    EXPECT_EQ(message(), "No HRTF set found: headphones play the stereo fold-down");
    EXPECT_NE((audio_.pump(block), audio_.pump(block))[1][0], 0.0F);
    load(file("two.wav", 2), true);
    EXPECT_EQ(message(), "(none)");
}

TEST_F(Listening, AnUpmixIsOfferedWhereItFillsSpeakers) {
    load(file("a.wav"));
    EXPECT_FALSE(listening().canUpmix()) << "stereo on stereo";
    for (const char* profile : {"Headphones", "Room 9.1.6"}) {
        use(profile);
        EXPECT_TRUE(listening().canUpmix()) << profile;
    }
    sound().setFormatOverride(SourceFormat::discrete(2));
    EXPECT_FALSE(listening().canUpmix());

    const UpmixSettings upmix{true, UpmixPreset::hall, params(UpmixPreset::hall)};
    listening().setUpmix(upmix);
    EXPECT_EQ(settings_.value().upmix, upmix);
    sound().setFormatOverride({});
    play();
    EXPECT_EQ(heardFrom(), 0) << "stored, but not heard in this build";
}

TEST_F(Listening, VolumeIsAGainWithAFloor) {
    const struct {
        double db, gain;
    } cases[] = {{0, 1}, {-20, 0.1}, {6, std::pow(10, 0.3)}, {-59.9, std::pow(10, -59.9 / 20)}, {-60, 0}, {-1e9, 0}};
    for (const auto& c : cases) {
        listening().setVolumeDB(c.db);
        EXPECT_DOUBLE_EQ(engine_.ctx().gain(), c.gain) << c.db << " dB";
    }
    listening().setVolumeDB(std::nan(""));
    EXPECT_EQ(listening().volumeDB(), -1e9);
}

}  // namespace
}  // namespace brindlehum
