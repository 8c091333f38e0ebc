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
};

TEST_F(Seats, TakingTheSeatBringsTheFormerOwnerToRest) {
    load(file("a.wav"), true);
    transport().seek(5000);
    settle();
    pump(4);
    loop_.advance(0.034);
    other_->take();
    other_->configure(std::nullopt, false);
    other_->setConfig(test::straight(2));
    other_->play(reader(2, 96000), 0);
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
