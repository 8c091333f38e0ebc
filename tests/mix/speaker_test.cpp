// SpeakerTest: the ident sounds on the one output asked for, with as many beeps as the speaker's number.
#include "mix/engine/speaker_test.h"

#include <cmath>

#include "playback_fixture.h"

namespace brindlehum {
namespace {

using test::Planes;

TEST(SpeakerIdent, HasNoiseAndThenAsManyBeepsAsAsked) {
    for (const int beeps : {1, 2, 16}) {
        const std::vector<float> ident = speakerIdent(48000, beeps, false);
        int counted = 0;
        int silent = 0;
        for (size_t i = 48000; i < ident.size(); ++i) {
            if (ident[i] != 0 && silent > 2400) { ++counted; }
            silent = ident[i] == 0 ? silent + 1 : 0;
        }
        EXPECT_EQ(counted, beeps);
        double power = 0;
        for (size_t i = 0; i < 48000; ++i) { power += double(ident[i]) * double(ident[i]) / 48000; }
        EXPECT_NEAR(10 * std::log10(power), -24, 6) << "dBFS";
        for (const float x : ident) { ASSERT_LT(std::abs(x), 0.4F); }
    }
}

using Ident = test::PlayerTest;

TEST_F(Ident, SoundsOnItsOutputAloneAndGivesTheEngineBack) {
    SpeakerTest test(engine_, loop_);
    load(file("a.wav"), true);
    test.play(std::nullopt, {5, 2});
    EXPECT_FALSE(transport().isPlaying());
    const Planes heard = (audio_.pump(block), audio_.pump(block));
    for (size_t c = 0; c < heard.size(); ++c) {
        const bool sounds = std::ranges::any_of(heard[c], [](float x) { return x != 0; });
        EXPECT_EQ(sounds, c == 5) << "channel " << c;
    }
    loop_.advance(5);
    EXPECT_FALSE(test.isPlaying());
    test.play(std::nullopt, {5, 2});
    play();
    EXPECT_FALSE(test.isPlaying());
    EXPECT_TRUE(transport().isPlaying());
    audio_.setOpeningFails(true);
    audio_.setOutputs({{1, "manual", "Manual", 2}});
    loop_.drain();
    EXPECT_THROW(test.play("other", {0, 1}), Error);
    EXPECT_FALSE(test.isPlaying());
}

}  // namespace
}  // namespace brindlehum
