// PlayerModel: what each intent does to the transport, which of two intents wins, and what the user is told.
#include "mix/player/player_model.h"

#include "playback_fixture.h"

namespace brindlehum {
namespace {

using test::Planes;
using Player = test::PlayerTest;

constexpr int64_t whole = 48000;  // frames of most files here

TEST_F(Player, APlayedFileIsHeardSampleBySample) {
    load(file("a.wav"), true);
    EXPECT_TRUE(player_->isPlaying());
    const Planes heard = pumpUntil([&] { return engine_.finished(); });
    for (int c = 0; c < 2; ++c) {
        int wrong = 0;
        for (int64_t i = block; i < 8192; ++i) { wrong += heard[size_t(c)][size_t(i)] != test::sample(c, i); }
        EXPECT_EQ(wrong, 0) << "channel " << c;
    }
    for (size_t c = 2; c < 16; ++c) { EXPECT_EQ(*std::max_element(heard[c].begin(), heard[c].end()), 0.0F); }

    EXPECT_TRUE(player_->isPlaying());
    loop_.advance(1.0 / 30);
    EXPECT_FALSE(player_->isPlaying());
    EXPECT_EQ(player_->playhead().frame(), 0) << "back to the cue";
}

TEST_F(Player, OfTwoLoadsTheSecondWins) {
    const auto a = file("a.wav", 2);
    const auto b = file("b.wav", 6);
    player_->load(a, true);
    player_->load(b, false);
    settle();
    EXPECT_EQ(player_->info()->url, b);
    EXPECT_FALSE(player_->isPlaying()) << "the first one's auto-play goes with it";

    player_->load(a, false);
    player_->load(b, false);
    settle();
    EXPECT_EQ(player_->info()->url, b) << "the file that is loaded, asked for again";
    EXPECT_TRUE(player_->waveform() && player_->waveform()->isComplete());

    player_->load(folder_ / "absent.wav", false);
    player_->load(a, false);
    settle();
    EXPECT_EQ(player_->info()->url, a);
    EXPECT_EQ(message(), "(none)");
}

TEST_F(Player, LoadingTheLoadedFileStartsItOnlyWhenItRests) {
    const auto a = file("a.wav");
    load(a);
    EXPECT_FALSE(player_->isPlaying());
    load(a, true);
    EXPECT_TRUE(player_->isPlaying());
    for (int i = 0; i < 20; ++i) { audio_.pump(block); }
    const double before = engine_.ctx().position();
    load(a, true);
    EXPECT_EQ(engine_.ctx().position(), before) << "no restart";
    EXPECT_EQ(audio_.opened(), 1);
}

TEST_F(Player, ALoadStartsAfresh) {
    load(file("a.wav"));
    player_->setFormatOverride(SourceFormat::discrete(2));
    player_->select(FrameRange{1000, 9000});
    settle();
    EXPECT_TRUE(player_->isPlaying());
    load(file("b.wav"));
    EXPECT_FALSE(player_->isPlaying());
    EXPECT_FALSE(player_->selection());
    EXPECT_EQ(player_->cueFrame(), 0);
    EXPECT_EQ(player_->playhead().frame(), 0);
    EXPECT_FALSE(player_->formatOverride());
    EXPECT_EQ(player_->source(), SourceFormat::stereo());
}

TEST_F(Player, WhereAStartLands) {
    load(file("a.wav"));
    const FrameRange range{10000, 20000};
    const struct {
        const char* what;
        std::optional<FrameRange> selection;
        std::optional<int64_t> from;
        int64_t lands;
    } cases[] = {
        {"a frame", {}, 5000, 5000},
        {"the end", {}, whole, 0},
        {"past the end", {}, whole + 5, 0},
        {"the cue", {}, {}, 0},
        {"inside the selection", range, 15000, 15000},
        {"before the selection", range, 9999, 10000},
        {"at the selection's end", range, 20000, 10000},
        {"the cue of a selection", range, {}, 10000},
    };
    for (const auto& c : cases) {
        player_->select(c.selection);
        play(c.from);
        EXPECT_EQ(player_->currentFrame(), c.lands) << c.what;
        EXPECT_EQ(heardFrom(), c.lands) << c.what;
        player_->stopAndReturn();
        audio_.pump(block);
        player_->select({});
        load(file("other.wav"));
        load(folder_ / "a.wav");
    }
}

TEST_F(Player, ASeekClampsLeavesAForeignSelectionAndStarts) {
    load(file("a.wav"));
    player_->select(FrameRange{10000, 20000});
    settle();
    const struct {
        int64_t to, lands;
        bool keepsSelection;
    } cases[] = {{15000, 15000, true}, {whole + 7, whole - 1, false}, {-5, 0, false}, {30000, 30000, false}};
    for (const auto& c : cases) {
        player_->seek(c.to);
        EXPECT_EQ(player_->cueFrame(), c.lands);
        EXPECT_EQ(player_->selection().has_value(), c.keepsSelection) << c.to;
        settle();
        EXPECT_TRUE(player_->isPlaying());
        EXPECT_EQ(player_->playhead().frame(), double(c.lands));
    }
    EXPECT_EQ(heardFrom(), 30000);
    player_->togglePlay();
    EXPECT_FALSE(player_->isPlaying());
    EXPECT_EQ(player_->playhead().frame(), 30000) << "a stop returns to where playing began";
}

TEST_F(Player, ASelectionIsLongerThanTenMilliseconds) {
    const struct {
        int rate;
        int64_t length;
        bool counts;
    } cases[] = {{48000, 100, false}, {48000, 480, false}, {48000, 481, true}, {44100, 441, false}, {44100, 442, true}};
    for (const auto& c : cases) {
        load(file(std::to_string(c.rate) + ".wav", 2, whole, c.rate));
        player_->select(FrameRange{100, 100 + c.length});
        EXPECT_EQ(player_->selection().has_value(), c.counts) << c.length << " at " << c.rate;
        settle();
        EXPECT_EQ(player_->isPlaying(), c.counts);
        player_->stopAndReturn();
    }
    player_->select(FrameRange{whole - 1000, whole + 1000});
    EXPECT_EQ(player_->selection(), (FrameRange{whole - 1000, whole})) << "no selection reaches out of the file";
}

TEST_F(Player, LoopsTheSelectionOrTheWholeFile) {
    load(file("a.wav", 2, 3000));
    player_->setLoop(true);
    const auto firstWrap = [&](int64_t low, int64_t end) {
        const int64_t length = end - low;
        const int64_t checked = 5 * length / 2;  // less than is prefilled, so no block runs dry
        int64_t frames = 0;
        const Planes heard = pumpUntil([&] { return (frames += block) > checked + 2 * block; });
        EXPECT_FALSE(engine_.finished());
        for (int64_t i = block; i < checked; ++i) {
            if (heard[0][size_t(i)] != test::sample(0, low + i % length)) { return i; }
        }
        return int64_t(-1);
    };
    play();
    EXPECT_EQ(firstWrap(0, 3000), -1) << "the whole file";
    player_->select(FrameRange{500, 1500});
    settle();
    EXPECT_EQ(firstWrap(500, 1500), -1) << "the selection";

    player_->setLoop(false);
    settle();
    pumpUntil([&] { return engine_.finished(); });
    loop_.advance(0.1);
    EXPECT_FALSE(player_->isPlaying());
    EXPECT_EQ(player_->playhead().frame(), 500);
}

TEST_F(Player, ClearingTheSelectionPlaysOnPastItsEnd) {
    load(file("a.wav"));
    player_->select(FrameRange{1000, 3000});
    settle();
    for (int i = 0; i < 4; ++i) { audio_.pump(block); }
    loop_.advance(0.034);
    const int64_t at = player_->currentFrame();
    EXPECT_EQ(at, 1000 + 4 * block - 1);
    player_->clearSelection();
    settle();
    EXPECT_EQ(heardFrom(), at);
    pumpUntil([&] { return engine_.ctx().position() > 4000; });
}

TEST_F(Player, AStopVoidsAStartThatIsUnderWay) {
    load(file("a.wav"));
    player_->play(std::nullopt);
    player_->stopAndReturn();
    settle();
    EXPECT_FALSE(player_->isPlaying());
    EXPECT_FALSE(engine_.isRunning());
    player_->play(100);
    player_->play(7000);
    settle();
    EXPECT_EQ(heardFrom(), 7000) << "and so does a newer start";
}

TEST_F(Player, ListenModesAreForTwoChannels) {
    load(file("two.wav", 2), true);
    player_->setListen(ListenMode::mono);
    audio_.pump(block);
    Planes heard = audio_.pump(block);
    EXPECT_EQ(heard[0], heard[1]);
    EXPECT_EQ(heard[0], std::vector<float>(block, 0)) << "the channels are each other's negative";
    load(file("four.wav", 4), true);
    audio_.pump(block);
    heard = audio_.pump(block);
    EXPECT_NE(heard[0], heard[1]);
}

TEST_F(Player, WhatIsAskedForWhileItPlaysIsHeardWithoutARestart) {
    load(file("a.wav"), true);
    audio_.pump(block);
    player_->setFormatOverride(SourceFormat::discrete(2));
    settle();
    EXPECT_EQ(audio_.pump(block).size(), 16U);
    EXPECT_EQ(heardFrom(), 3 * block - block) << "the stream goes on";
    EXPECT_EQ(player_->laneLabels(), (std::vector<std::string>{"1", "2"}));
}

TEST_F(Player, FilesThatCannotBePlayedAreNamed) {
    load(file("good.wav"));
    std::filesystem::create_directory(folder_ / "folder.wav");
    test::writeBytes(folder_ / "garbage.wav", std::string(5000, '\x42'));
    test::writeBytes(folder_ / "empty.wav", "");
    const auto truncated = test::readBytes(folder_ / "good.wav").substr(0, 30);
    test::writeBytes(folder_ / "truncated.wav", truncated);
    for (const char* name : {"absent.wav", "folder.wav", "garbage.wav", "empty.wav", "truncated.wav"}) {
        load(folder_ / name, true);
        EXPECT_EQ(message(), std::string("Can't read ") + name);
        EXPECT_FALSE(player_->isPlaying());
        EXPECT_EQ(player_->info()->url, folder_ / "good.wav");
    }
    load(file("wide.wav", 65, 1000), true);
    EXPECT_EQ(message(), "Unsupported channel count (65)");
    EXPECT_FALSE(player_->isPlaying());
    load(folder_ / "good.wav", true);
    EXPECT_EQ(message(), "(none)");
    EXPECT_EQ(heardFrom(), 0) << "still usable";
}

TEST_F(Player, AFileWithoutFramesEndsAtOnce) {
    load(file("nothing.wav", 2, 0), true);
    pumpUntil([&] {
        loop_.advance(0.04);
        return !player_->isPlaying();
    });
    player_->setLoop(true);
    play();
    audio_.pump(block);
    player_->seek(10);
    player_->stopAndReturn();
    settle();
    EXPECT_FALSE(player_->isPlaying());
}

TEST_F(Player, AFileThatShrinksOrVanishesWhileItPlays) {
    // Longer than the stream can hold, so that the reader comes to where the data breaks off.
    const auto a = file("a.wav", 2, 480000);
    load(a, true);
    std::filesystem::resize_file(a, 200000 * 8);
    pumpUntil([&] {
        loop_.advance(0.04);
        return !player_->isPlaying();
    });
    EXPECT_EQ(message(), "(none)") << "it ends as at the end of the file";

    std::filesystem::remove(a);
    play();
    EXPECT_FALSE(player_->isPlaying());
    EXPECT_NE(message(), "(none)");
    EXPECT_FALSE(player_->exportForDrag(false));
    EXPECT_EQ(message(), "Can't read a.wav");
}

TEST_F(Player, ADeviceThatCannotBeOpened) {
    load(file("a.wav"));
    for (const auto fail : {&ManualAudioSystem::setOpeningFails, &ManualAudioSystem::setStartingFails}) {
        (audio_.*fail)(true);
        play();
        EXPECT_EQ(message(), "Couldn't open the output device");
        EXPECT_FALSE(player_->isPlaying());
        (audio_.*fail)(false);
    }
    play();
    EXPECT_TRUE(player_->isPlaying());
    EXPECT_EQ(message(), "(none)");
}

TEST_F(Player, PlaysOnWhereItWasWhenTheDeviceChanges) {
    load(file("a.wav"), true);
    for (int i = 0; i < 10; ++i) { audio_.pump(block); }
    loop_.advance(0.034);
    const int64_t at = player_->currentFrame();
    EXPECT_EQ(at, 10 * block - 1);
    audio_.setOutputs({{2, "next", "Next", 8}});
    audio_.setDefault(2);
    settle();
    EXPECT_TRUE(player_->isPlaying());
    EXPECT_EQ(engine_.deviceChannels(), 8);
    EXPECT_EQ(heardFrom(), at);

    // None is left: the player says so and stops; with one back, it plays again.
    audio_.setOutputs({});
    audio_.setDefault(std::nullopt);
    settle();
    EXPECT_EQ(message(), "Output device changed: Couldn't open the output device");
    EXPECT_FALSE(player_->isPlaying());
    audio_.setOutputs({{1, "manual", "Manual", 16}});
    audio_.setDefault(1);
    play();
    EXPECT_TRUE(player_->isPlaying());

    player_->stopAndReturn();
    audio_.setOutputs({{5, "rest", "At rest", 4}});
    audio_.setDefault(5);
    settle();
    EXPECT_FALSE(player_->isPlaying()) << "a change at rest starts nothing";
    EXPECT_EQ(engine_.deviceChannels(), 4);
}

TEST_F(Player, AProfileOfAnotherDeviceTakesARunningOrStartingStreamAlong) {
    audio_.setOutputs({{1, "manual", "Manual", 16}, {2, "pair", "Pair", 2}});
    settings_.change([](AppSettings& s) { s.profiles[2].deviceUID = "pair"; });
    const UUID first = settings_.value().profiles[1].id;
    const UUID other = settings_.value().profiles[2].id;
    load(file("a.wav"), true);
    for (int i = 0; i < 10; ++i) { audio_.pump(block); }
    loop_.advance(0.034);
    player_->selectProfile(other);
    settle();
    EXPECT_EQ(engine_.deviceChannels(), 2);
    EXPECT_EQ(heardFrom(), 10 * block - 1);

    player_->stopAndReturn();
    player_->play(7000);
    audio_.setSampleRate(44100);
    player_->selectProfile(first);
    settle();
    EXPECT_TRUE(player_->isPlaying()) << "chosen while the stream was being opened";
    EXPECT_EQ(engine_.sampleRate(), 44100);
    pumpUntil([&] { return engine_.ctx().position() > 7000; });
    EXPECT_LT(engine_.ctx().position(), 8000);
}

TEST_F(Player, WithoutAnHRTFSetHeadphonesGetTheFoldDown) {
    use("Headphones");
    load(file("five.wav", 6), true);
    ASSERT_TRUE(loop_.runUntil([&] { return engine_.binauralMissing(); }));
    settle();
    EXPECT_EQ(message(), "No HRTF set found: headphones play the stereo fold-down");
    EXPECT_TRUE(player_->isPlaying());
    audio_.pump(block);
    const Planes heard = audio_.pump(block);
    EXPECT_NE(heard[0][0], 0.0F);
    EXPECT_NE(heard[1][0], 0.0F);
    EXPECT_EQ(heard[2][0], 0.0F);
    load(file("two.wav", 2), true);
    EXPECT_EQ(message(), "(none)") << "stereo needs no set";
}

TEST_F(Player, OthersAreAskedToGiveWayBeforeAStart) {
    int asked = 0;
    player_->onWillPlay = [&] { ++asked; };
    play();
    EXPECT_EQ(asked, 0) << "nothing is loaded";
    load(file("a.wav"), true);
    EXPECT_EQ(asked, 1);
}

TEST_F(Player, GoesAtAnyMomentWithoutATrace) {
    const auto a = file("a.wav");
    player_->load(a, true);
    player_.reset();
    loop_.drain();
    player_ = std::make_unique<PlayerModel>(engine_, settings_, loop_, pool_);
    load(a);
    player_->play(std::nullopt);
    player_.reset();
    loop_.advance(1);
    audio_.setOutputs({});
    loop_.advance(30);
    EXPECT_FALSE(engine_.isRunning());
}

}  // namespace
}  // namespace brindlehum
