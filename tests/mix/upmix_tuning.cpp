// The upmix as the user shapes it: plans and writes a turn of the loop, own presets, and the comparison's loudness.
#include "mix/player/upmix_tuning.h"

#include <ebur128.h>

#include "mix/player/upmix_compare.h"
#include "mix/render/offline_render.h"
#include "playback_fixture.h"
#include "support/signals.h"

namespace brindlehum {
namespace {

struct Tuning : test::PlayerTest {
    void SetUp() override {
        use("Room 9.1.6");
        audio_.setOutputs({{1, "room", "Room", 16}});
    }
    UpmixTuning& tuning() { return player_->upmix(); }
    UpmixCompare& compare() { return player_->compare(); }
    void measured() {
        compare().queue().drain();
        loop_.drain();
    }
};

TEST_F(Tuning, AMovingSliderMakesOnePlanAndOneWriteATurnOfTheLoop) {
    load(file("a.wav"), true);
    tuning().choose("film");
    loop_.advance(0);
    ASSERT_NE(engine_.upmixer(), nullptr);
    const int plans = engine_.upmixer()->plans();
    const int writes = defaults_.writes;
    UpmixParams params = tuning().now().params;
    for (int turn = 1; turn <= 5; ++turn) {
        for (int move = 0; move < 20; ++move) {
            params.ambienceDB += 0.01;
            tuning().edit(params);
            pump(1);
        }
        loop_.advance(0);
        EXPECT_EQ(engine_.upmixer()->plans(), plans + turn);
        EXPECT_EQ(defaults_.writes, writes + turn);
    }
    EXPECT_EQ(engine_.upmixer()->request()->params, params) << "the last value is heard";
    EXPECT_EQ(settings_.value().upmix.params, params);
}

TEST_F(Tuning, ThePictureMeasuresOnlyWhileItIsShown) {
    test::writeAudio(folder_ / "a.wav", test::Planes(2, test::noise(96000, 3)));  // straight ahead
    load(folder_ / "a.wav", true);
    tuning().choose("film");
    loop_.advance(0);
    UpmixLevels& levels = player_->upmixLevels();
    const auto listen = [&] {
        for (int turn = 0; turn < 4; ++turn) {
            pumpUntil([&, until = engine_.ctx().position() + 2000] { return engine_.ctx().position() > until; });
            loop_.advance(1.0 / 30);
        }
    };
    listen();
    EXPECT_TRUE(levels.speakers().empty());
    levels.show(true);
    listen();
    ASSERT_EQ(levels.speakers().size(), 16U);
    for (const auto& speaker : levels.speakers()) {
        const bool isFront = speaker.id == SpeakerID::C || speaker.id == SpeakerID::LFE;
        EXPECT_EQ(speaker.direct.level > -30, isFront) << speaker.label;
        EXPECT_LT(speaker.ambience.level, -50) << speaker.label;
    }
    levels.show(false);
    const auto before = levels.speakers()[2].direct;
    listen();
    EXPECT_EQ(levels.speakers()[2].direct, before);
    EXPECT_EQ(mn_upmix_take_direct(engine_.upmixer()->raw(), 2), 0) << "the processor measures nothing";
}

TEST_F(Tuning, OwnPresetsAreKeptRenamedAndForgotten) {
    tuning().choose("hall");
    UpmixParams params = tuning().now().params;
    params.stage = 55;
    tuning().edit(params);
    for (const char* name : {"", "  ", " a", "Film", "MUSIC", "off"}) { EXPECT_NE(tuning().saveAs(name), "") << name; }
    EXPECT_NE(tuning().rename("Bed"), "") << "a built-in preset keeps its name";
    EXPECT_EQ(tuning().saveAs("Große Bühne"), "");
    EXPECT_FALSE(tuning().isChanged());
    params.stage = 40;
    tuning().edit(params);
    EXPECT_TRUE(tuning().isChanged());
    tuning().reset();
    EXPECT_EQ(tuning().now().params.stage, 55) << "back to the own preset's value";
    EXPECT_EQ(tuning().saveAs("Other"), "");
    EXPECT_NE(tuning().rename("Große Bühne"), "") << "there is one of this name";
    EXPECT_EQ(tuning().rename("other"), "") << "only the case of its letters";
    EXPECT_EQ(tuning().own().back().name, "other");
    loop_.advance(0);
    EXPECT_EQ(SettingsStore(defaults_).value().upmix.own, "other") << "stored";
    EXPECT_EQ(tuning().choose("GROSSE BÜHNE"), "no upmix preset GROSSE BÜHNE");
    EXPECT_EQ(tuning().choose("Große Bühne"), "");
    tuning().remove();
    EXPECT_EQ(tuning().own().size(), 1U);
    EXPECT_EQ(presetName(tuning().now()), "Hall");
    EXPECT_TRUE(tuning().isChanged()) << "the numbers go on";
}

// BS.1770 loudness by another implementation.
double loudness(const MixConfig& config, const test::Planes& sound) {
    const auto frames = int64_t(sound[0].size());
    auto reader = std::make_shared<StreamReader>(std::make_unique<MemorySource>(sound, 48000.0), 48000.0, int64_t(0),
                                                 frames, false, int64_t(0), int64_t(0));
    OfflineRender render(config, std::move(reader), 48000, 6, 1024, 1);
    ebur128_state* state = ebur128_init(6, 48000, EBUR128_MODE_I);
    const int map[] = {EBUR128_LEFT,   EBUR128_RIGHT,         EBUR128_CENTER,
                       EBUR128_UNUSED, EBUR128_LEFT_SURROUND, EBUR128_RIGHT_SURROUND};
    for (unsigned c = 0; c < 6; ++c) { ebur128_set_channel(state, c, map[c]); }
    while (const int count = render.next()) {
        std::vector<float> interleaved;
        for (int i = 0; i < count; ++i) {
            for (int c = 0; c < 6; ++c) { interleaved.push_back(render.planes()[c][i]); }
        }
        ebur128_add_frames_float(state, interleaved.data(), size_t(count));
    }
    double lufs = 0;
    ebur128_loudness_global(state, &lufs);
    ebur128_destroy(&state);
    return lufs;
}

TEST_F(Tuning, TheComparisonIsEquallyLoudAndClipsNothing) {
    for (const double peak : {0.2, 1.0}) {
        test::Planes sound = {test::noise(144000, 1), test::noise(144000, 2)};
        for (auto& plane : sound) {
            for (float& x : plane) { x *= float(peak); }
        }
        for (const UpmixPreset preset : allUpmixPresets) {
            ListeningSnapshot now;
            now.profile.layout = LayoutID::l51;
            now.profile.outputs = {0, 1, 2, 3, 4, 5};
            now.deviceChannels = 6;
            now.listen = ListenMode::mono;
            now.upmix = {true, preset, params(preset)};
            const auto open = [&] { return std::make_unique<MemorySource>(sound, 48000.0); };
            const auto levels = upmixLevels(now, open, {0, 144000}, 48000, [] { return false; });
            const MatchedGains gains = matchedGains(levels, 0);
            now.comparison = UpmixComparison{true, gains.plainDb};
            const double plain = loudness(listeningMix(now).config, sound);
            now.comparison = UpmixComparison{false, gains.upmixDb};
            EXPECT_NEAR(loudness(listeningMix(now).config, sound), plain, 0.1) << rawValue(preset);
            EXPECT_LE(std::pow(10, gains.plainDb / 20) * levels.plainPeak, 1.0001) << rawValue(preset);
            EXPECT_NEAR(levels.plainPeak, peak, 1e-4);
        }
    }
    EXPECT_EQ(matchedGains({-INFINITY, -INFINITY, 0}, 0).plainDb, 0) << "silence";
}

TEST_F(Tuning, TheComparisonSwitchesUntilSomethingElseChanges) {
    load(file("a.wav"), true);
    compare().toggle();
    EXPECT_FALSE(compare().isMeasuring()) << "there is no upmix";
    const std::pair<const char*, std::function<void()>> changes[] = {
        {"a slider",
         [this] {
             UpmixParams params = tuning().now().params;
             params.stage += 1;
             tuning().edit(params);
         }},
        {"another sound", [this] { load(file("b.wav")); }},
        {"another profile", [this] { player_->listening().selectProfile(settings_.value().profiles[1].id); }},
    };
    for (const auto& [name, change] : changes) {
        SCOPED_TRACE(name);
        tuning().choose("film");
        loop_.advance(0);
        compare().toggle();
        EXPECT_TRUE(compare().isMeasuring());
        measured();
        EXPECT_TRUE(compare().isPlain());
        EXPECT_EQ(engine_.upmixer(), nullptr) << "the fold-down plays";
        compare().toggle();
        EXPECT_FALSE(compare().isPlain());
        ASSERT_TRUE(listening().comparison());
        compare().toggle();
        EXPECT_TRUE(compare().isPlain()) << "known by now";
        change();
        loop_.advance(0);
        EXPECT_FALSE(listening().comparison());
        EXPECT_FALSE(compare().isPlain());
    }
}

}  // namespace
}  // namespace brindlehum
