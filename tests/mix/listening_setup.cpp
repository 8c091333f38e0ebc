// ListeningSetup: what is chosen is heard in the running sound.
#include "mix/player/listening_setup.h"

#include <cmath>

#include "playback_fixture.h"

namespace brindlehum {
namespace {

using test::Planes;
using Listening = test::PlayerTest;

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
    player_->upmix().choose("film");
    loop_.advance(0);
    EXPECT_EQ(listening().upmixState(), UpmixState::unheard);
    listening().setListen(ListenMode::mono);
    const Planes heard = (audio_.pump(block), audio_.pump(block));
    EXPECT_EQ(heard[0], std::vector<float>(block, 0)) << "the fold-down follows the monitor mode";
}

TEST_F(Listening, TheFirstProfileIsTheOneThatFitsTheFirstRealDevice) {
    const auto active = [this] { return settings_.activeProfile().name; };
    settings_.change([](AppSettings& s) { s.activeProfileID.reset(); });
    audio_.setServer(SoundServer::absent);
    audio_.setOutputs({{1, "pair", "Pair", 2}});
    listening().chooseFirstProfile();
    EXPECT_EQ(active(), "Room 9.1.6") << "no server yet";
    audio_.setServer(SoundServer::running);
    listening().chooseFirstProfile();
    EXPECT_EQ(active(), "Nearfield");
    audio_.setOutputs({{1, "room", "Room", 16}});
    listening().chooseFirstProfile();
    EXPECT_EQ(active(), "Nearfield") << "chosen once";
}

TEST_F(Listening, AProfileThatFollowsPositionsIsHeardOnThem) {
    audio_.setOutputs({{1, "swapped", "Swapped", 2, {"FR", "FL"}}});
    load(file("a.wav"), true);
    const Planes heard = (audio_.pump(block), audio_.pump(block));
    EXPECT_EQ(heard[1][0], test::sample(0, block));
    EXPECT_EQ(heard[0][0], test::sample(1, block));
}

TEST_F(Listening, VolumeIsAGainWithAFloor) {
    for (const auto& [db, gain] : {std::pair(0.0, 1.0), {-20, 0.1}, {6, std::pow(10, 0.3)}, {-60, 0}, {-1e9, 0}}) {
        listening().setVolumeDB(db);
        EXPECT_DOUBLE_EQ(engine_.ctx().gain(), gain) << db << " dB";
    }
    listening().setVolumeDB(std::nan(""));
    EXPECT_EQ(listening().volumeDB(), -1e9);
}

}  // namespace
}  // namespace brindlehum
