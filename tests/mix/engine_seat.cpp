// EngineSeat: whose sound plays when two share the engine.
#include "mix/engine/engine_seat.h"

#include "playback_fixture.h"

namespace brindlehum {
namespace {

// The player, and a second owner beside it as the editor will be.
class Seats : public test::PlayerTest {
protected:
    int losses_ = 0;
    std::unique_ptr<EngineSeat> other_ =
        std::make_unique<EngineSeat>(engine_, EngineSeat::Calls{nullptr, nullptr, [this] { ++losses_; }});

    void otherPlays() {
        other_->take();
        other_->configure(std::nullopt, false);
        other_->setConfig(test::straight(2));
        other_->play(reader(2, 96000), 0);
    }
};

TEST_F(Seats, ThePlayerNeitherSilencesNorRetunesAnotherOwnersSound) {
    const auto b = file("b.wav", 6);
    load(file("a.wav"));
    otherPlays();
    pump(2);
    const std::function<void()> intents[] = {
        [&] { listening().setListen(ListenMode::mono); },
        [&] { sound().setFormatOverride(SourceFormat::discrete(2)); },
        [&] { load(b); },
        [&] {
            listening().setRotation({30, 0, 0});
        },
        [&] { listening().selectProfile(settings_.value().profiles[0].id); },
        [&] { player_->stopAndReturn(); },
        [&] { player_.reset(); },
    };
    for (int64_t at = 2 * block; const auto& intend : intents) {
        intend();
        EXPECT_EQ(audio_.pump(block)[0][0], test::sample(0, at)) << at / block;
        at += block;
    }
    EXPECT_EQ(audio_.opened(), 1);
    EXPECT_EQ(losses_, 0);
}

TEST_F(Seats, TakingTheSeatBringsTheFormerOwnerToRest) {
    load(file("a.wav"), true);
    transport().seek(5000);
    settle();
    pump(4);
    loop_.advance(0.034);
    otherPlays();
    EXPECT_FALSE(transport().isPlaying());
    EXPECT_EQ(transport().playhead().frame(), 5000);
    EXPECT_EQ(heardFrom(), 0) << "the new owner's sound alone";

    play(7000);
    EXPECT_EQ(losses_, 1);
    EXPECT_EQ(heardFrom(), 7000);
    player_->play(9000);
    other_->take();
    settle();
    EXPECT_FALSE(transport().isPlaying()) << "a start under way is void";
    pump(1);
    EXPECT_EQ(audio_.pump(block)[0], std::vector<float>(block, 0)) << "no sound outlasts its owner";
}

}  // namespace
}  // namespace brindlehum
