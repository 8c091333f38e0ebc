// The output meter: its ballistics, and the outputs that it shows.
#include "mix/player/output_meter.h"

#include <cmath>

#include "platform/headless_audio.h"
#include "playback_fixture.h"

namespace brindlehum::test {
namespace {

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
    const MeterLevel fault = metered({}, std::numeric_limits<float>::quiet_NaN(), 0.03);
    EXPECT_TRUE(fault.isOver);
    EXPECT_EQ(fault.level, MeterLevel::floor);
}

TEST(MeteredOutputs, AreTheSpeakersThatTheProfilePlaysOn) {
    OutputProfile room;
    room.layout = LayoutID::l51;
    room.outputs = {0, 1, 2, -1, 5, 4};
    const auto outputs = meteredOutputs(room, {});
    ASSERT_EQ(outputs.size(), 5U) << "a speaker that is off has no bar";
    EXPECT_EQ(outputs[3].label, "Ls");
    EXPECT_EQ(outputs[3].channel, 5);
    OutputProfile phones;
    phones.kind = OutputProfile::Kind::headphones;
    phones.headphoneRight = 7;
    EXPECT_EQ(meteredOutputs(phones, {})[1].channel, 7);
}

using OutputMeterTest = PlayerTest;

TEST_F(OutputMeterTest, ShowsWhatTheDeviceGetsAndComesToRest) {
    const auto level = [this] { return player_->meter().outputs().at(0).level; };
    const auto run = [this](int ticks) {
        for (int i = 0; i < ticks; ++i) {
            pump(1);
            loop_.advance(1.0 / 30);
        }
    };
    load(file("tone.wav"));
    play(40000);
    run(8);
    // Samples 40,001 to some 42,000 of 65,536.
    EXPECT_NEAR(level().level, 20 * std::log10(42000 / 65536.0), 0.3);
    listening().setVolumeDB(12);
    run(2);
    EXPECT_TRUE(level().isOver);
    player_->stopAndReturn();
    run(30 * 12);
    EXPECT_TRUE(level().isAtRest());
    EXPECT_TRUE(level().isOver) << "until it is cleared";
    use("Room 9.1.6");
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
