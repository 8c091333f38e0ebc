// The output meter: its ballistics, and the outputs that it shows.
#include "mix/player/output_meter.h"

#include <cmath>

#include "mix/config/speaker_map.h"
#include "platform/headless_audio.h"
#include "playback_fixture.h"

namespace brindlehum::test {
namespace {

constexpr float none = std::numeric_limits<float>::quiet_NaN();

float linear(double db) {
    return float(std::pow(10, db / 20));
}

TEST(MeterLevel, RisesAtOnceFallsSlowlyAndHoldsForTwoSeconds) {
    struct Step {
        float peak;
        double seconds;
        double level, hold;  // dBFS
        bool isOver = false;
    };
    const std::vector<Step> course = {
        {linear(-6), 0.03, -6, -6},
        {0, 0.85, -16, -6},            // 20 dB in 1.7 s
        {linear(-30), 0.85, -26, -6},  // a lower peak doesn't stop the fall
        {linear(-30), 0.17, -28, -6},  // 1.87 s: still held
        {0, 0.17, -30, -8},            // 2.04 s: the hold falls, too
        {linear(-3), 0.03, -3, -3},    // a higher peak is held anew
        {0, 60, -60, -60},
        {linear(-70), 0.03, -60, -60},  // below what the meter shows
        {1, 0.03, 0, 0},                // full scale itself is in range
        {1.001F, 0.03, 0, 0, true},
        {0, 10, -60, -60, true},  // the mark stays
    };
    MeterLevel level;
    for (size_t i = 0; i < course.size(); ++i) {
        level = metered(level, course[i].peak, course[i].seconds);
        EXPECT_NEAR(level.level, course[i].level, 0.02) << "step " << i;
        EXPECT_NEAR(level.hold, course[i].hold, 0.02) << "step " << i;
        EXPECT_EQ(level.isOver, course[i].isOver) << "step " << i;
    }
    for (const float fault : {none, std::numeric_limits<float>::infinity()}) {
        const MeterLevel after = metered({}, fault, 0.03);
        EXPECT_TRUE(after.isOver) << fault;
        EXPECT_EQ(after.level, MeterLevel::floor) << fault;
    }
}

TEST(MeteredOutputs, AreTheSpeakersThatTheProfilePlaysOn) {
    const auto text = [](const OutputProfile& profile, const std::vector<std::string>& positions) {
        std::string all;
        for (const auto& output : meteredOutputs(profile, positions)) {
            all += output.label + std::to_string(output.channel) + " ";
        }
        return all;
    };
    OutputProfile room;
    room.layout = LayoutID::l51;
    room.outputs = {0, 1, 2, -1, 5, 4};
    EXPECT_EQ(text(room, {}), "L0 R1 C2 Ls5 Rs4 ") << "a speaker that is off has no bar";
    room.followsPositions = true;
    EXPECT_EQ(text(room, {"FL", "FR", "RL", "RR", "FC", "LFE"}), "L0 R1 C4 LFE5 Ls2 Rs3 ");
    OutputProfile phones;
    phones.kind = OutputProfile::Kind::headphones;
    phones.headphoneLeft = 6;
    phones.headphoneRight = 7;
    EXPECT_EQ(text(phones, {}), "L6 R7 ");
}

struct OutputMeterTest : PlayerTest {
    const MeterLevel& level(size_t output) { return player_->meter().outputs().at(output).level; }
};

TEST_F(OutputMeterTest, ShowsWhatTheDeviceGetsAndComesToRest) {
    load(file("tone.wav"));
    ASSERT_EQ(player_->meter().outputs().size(), 2U);
    pump(1);
    play(40000);
    for (int i = 0; i < 8; ++i) {
        pump(1);
        loop_.advance(1.0 / 30);
    }
    // Samples 40,001 to some 42,000 of 65,536, at 0 dB of the profile's trims.
    EXPECT_NEAR(level(0).level, 20 * std::log10(42000 / 65536.0), 0.3);
    EXPECT_NEAR(level(1).hold, level(0).hold, 0.01);
    listening().setVolumeDB(12);
    pump(2);
    loop_.advance(1.0 / 30);
    EXPECT_TRUE(level(0).isOver);
    player_->stopAndReturn();
    pump(2);
    for (int i = 0; i < 30 * 12; ++i) {
        pump(1);
        loop_.advance(1.0 / 30);
    }
    EXPECT_TRUE(level(0).isAtRest());
    EXPECT_TRUE(level(0).isOver) << "until it is cleared";
    player_->meter().clearOver();
    EXPECT_FALSE(level(0).isOver);
    use("Room 9.1.6");
    player_->profileChanged();
    EXPECT_EQ(player_->meter().outputs().size(), 16U);
}

TEST(HeadlessMeter, MovesWithoutASoundServer) {
    ManualMainLoop loop;
    HeadlessAudioSystem audio;
    TempFolder folder;
    MemoryDefaults defaults;
    SettingsStore settings(defaults);
    PlaybackEngine engine(audio, loop, noStage);
    WorkerPool pool(1);
    PlayerModel player(engine, settings, loop, pool);
    writeAudio(folder / "tone.wav", counting(2, 48000), {});
    player.load(folder / "tone.wav", true);
    EXPECT_TRUE(loop.runUntil([&] {
        loop.advance(1.0 / 30);
        return player.meter().outputs()[0].level.level > -40;
    }));
    player.stopAndReturn();
}

}  // namespace
}  // namespace brindlehum::test
