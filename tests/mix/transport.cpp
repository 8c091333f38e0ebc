// Transport: what each intent does to the sound, which of two intents wins, and what outlives a device.
#include "mix/player/transport.h"

#include <atomic>

#include "playback_fixture.h"

namespace brindlehum {
namespace {

using test::Planes;
using Playing = test::PlayerTest;

constexpr int64_t whole = 48000;  // frames of most files here

TEST_F(Playing, AFileIsHeardSampleBySampleAndItsEndReturnsToTheCue) {
    load(file("a.wav"), true);
    EXPECT_TRUE(transport().isPlaying());
    const Planes heard = pumpUntil([&] { return engine_.finished(); });
    for (int c = 0; c < 2; ++c) {
        int wrong = 0;
        for (int64_t i = block; i < 8192; ++i) { wrong += heard[size_t(c)][size_t(i)] != test::sample(c, i); }
        EXPECT_EQ(wrong, 0) << "channel " << c;
    }
    for (size_t c = 2; c < 16; ++c) { EXPECT_EQ(*std::ranges::max_element(heard[c]), 0.0F); }
    loop_.advance(1.0 / 30);
    EXPECT_FALSE(transport().isPlaying());
    EXPECT_EQ(transport().playhead().frame(), 0);
}

TEST_F(Playing, ASeekClampsDropsAForeignSelectionAndStarts) {
    load(file("a.wav"));
    transport().select(FrameRange{10000, 20000});
    settle();
    EXPECT_EQ(heardFrom(), 10000);
    const struct {
        int64_t to, lands;
        bool keepsSelection;
    } cases[] = {{15000, 15000, true}, {whole + 7, whole - 1, false}, {-5, 0, false}, {30000, 30000, false}};
    for (const auto& c : cases) {
        transport().seek(c.to);
        EXPECT_EQ(transport().cueFrame(), c.lands);
        EXPECT_EQ(transport().selection().has_value(), c.keepsSelection) << c.to;
        settle();
        EXPECT_TRUE(transport().isPlaying());
        EXPECT_EQ(transport().playhead().frame(), double(c.lands));
    }
    EXPECT_EQ(heardFrom(), 30000);
    transport().togglePlay();
    EXPECT_FALSE(transport().isPlaying());
    EXPECT_EQ(transport().playhead().frame(), 30000) << "a stop returns to where playing began";
    for (const int presses : {2, 1, 1, 2}) {  // faster than a stream opens
        const bool before = transport().isPlaying();
        for (int press = 0; press < presses; ++press) { transport().togglePlay(); }
        settle();
        EXPECT_EQ(transport().isPlaying(), before != (presses == 1)) << presses;
    }
    transport().select(FrameRange{100, 200});
    EXPECT_FALSE(transport().selection()) << "too short to count";
}

// Stands in for an hour of MP3 on a slow disk: opening it takes until nobody wants it any more.
TEST_F(Playing, AnOvertakenStartIsAbandonedAndWaitingOnesOpenNothing) {
    load(file("a.wav"));
    std::atomic<int> opened = 0;
    std::atomic<bool> abandoned = false;
    std::atomic<bool> allWait = false;
    open_ = [&](const auto& path, const auto& stop) {
        if (++opened == 1) {
            const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(20);
            while (!(stop() && allWait) && std::chrono::steady_clock::now() < limit) { std::this_thread::yield(); }
            abandoned = stop();
        }
        return Transport::openFile(path, stop);
    };
    transport().seek(1);
    while (opened == 0) { std::this_thread::yield(); }
    for (int64_t i = 1; i <= 90; ++i) { transport().seek(100 * i); }
    allWait = true;
    settle();
    EXPECT_TRUE(abandoned);
    EXPECT_EQ(opened, 2) << "the one that ran, and the last";
    EXPECT_EQ(heardFrom(), 9000);
}

TEST_F(Playing, AStreamThatPlaysReadsOnWhileTheNextOneOpens) {
    load(file("a.wav", 2, 480000), true);
    open_ = [](const auto&, const auto&) -> std::unique_ptr<FrameSource> { throw std::runtime_error("too far"); };
    transport().seek(30000);
    settle();
    EXPECT_EQ(message(), "too far");
    pumpUntil([&] { return engine_.ctx().position() > 200000; });  // more than the ring holds
    EXPECT_TRUE(transport().isPlaying());
}

TEST_F(Playing, LoopsTheSelectionOrTheWholeFile) {
    load(file("a.wav", 2, 3000));
    transport().setLoop(true);
    // The first sample that differs from the loop's; none within less than is prefilled, so that no block runs dry.
    const auto firstFault = [&](int64_t low, int64_t end) {
        const int64_t checked = 5 * (end - low) / 2;
        int64_t frames = 0;
        const Planes heard = pumpUntil([&] { return (frames += block) > checked + 2 * block; });
        for (int64_t i = block; i < checked; ++i) {
            if (heard[0][size_t(i)] != test::sample(0, low + i % (end - low))) { return i; }
        }
        return int64_t(-1);
    };
    play();
    EXPECT_EQ(firstFault(0, 3000), -1) << "the whole file";
    transport().select(FrameRange{500, 1500});
    settle();
    EXPECT_EQ(firstFault(500, 1500), -1) << "the selection";
    transport().setLoop(false);
    settle();
    pumpUntil([&] { return engine_.finished(); });
    loop_.advance(0.1);
    EXPECT_EQ(transport().playhead().frame(), 500);
}

TEST_F(Playing, ClearingTheSelectionPlaysOnPastItsEnd) {
    load(file("a.wav"));
    transport().select(FrameRange{1000, 3000});
    settle();
    pump(4);
    loop_.advance(0.034);
    const int64_t at = transport().currentFrame();
    EXPECT_EQ(at, 1000 + 4 * block - 1);
    transport().clearSelection();
    settle();
    EXPECT_EQ(heardFrom(), at);
    pumpUntil([&] { return engine_.ctx().position() > 4000; });
}

TEST_F(Playing, AFileWithoutFramesEndsAtOnce) {
    load(file("nothing.wav", 2, 0), true);
    pumpUntil([&] {
        loop_.advance(0.04);
        return !transport().isPlaying();
    });
    transport().setLoop(true);
    transport().seek(10);
    settle();
    audio_.pump(block);
}

TEST_F(Playing, AFileThatShrinksEndsAndOneThatIsGoneFails) {
    // Longer than the ring, so that the reader meets the broken end.
    const auto a = file("a.wav", 2, 480000);
    load(a, true);
    std::filesystem::resize_file(a, 200000 * 8);
    pumpUntil([&] {
        loop_.advance(0.04);
        return !transport().isPlaying();
    });
    EXPECT_EQ(message(), "a.wav can't be read any further than 0:04.166");
    std::filesystem::remove(a);
    play();
    EXPECT_FALSE(transport().isPlaying());
    EXPECT_NE(message(), "(none)");
}

TEST_F(Playing, ADeviceThatCannotBeOpenedIsReportedAndTheNextStartTriesAgain) {
    load(file("a.wav"));
    for (const auto fail : {&ManualAudioSystem::setOpeningFails, &ManualAudioSystem::setStartingFails}) {
        (audio_.*fail)(true);
        play();
        EXPECT_EQ(message(), "Couldn't open the output device");
        EXPECT_FALSE(transport().isPlaying());
        (audio_.*fail)(false);
    }
    play();
    EXPECT_TRUE(transport().isPlaying());
    EXPECT_EQ(message(), "(none)");
}

TEST_F(Playing, PlaysOnWhereItWasWhenTheDeviceChanges) {
    load(file("a.wav"), true);
    pump(10);
    loop_.advance(0.034);
    const int64_t at = transport().currentFrame();
    EXPECT_EQ(at, 10 * block - 1);
    audio_.setOutputs({{2, "next", "Next", 8}});
    audio_.setDefault(2);
    settle();
    EXPECT_TRUE(transport().isPlaying());
    EXPECT_EQ(engine_.deviceChannels(), 8);
    EXPECT_EQ(heardFrom(), at);
    EXPECT_EQ(message(), "Sound now goes to Next, no longer to Manual");

    audio_.setOutputs({});
    audio_.setDefault(std::nullopt);
    settle();
    EXPECT_EQ(message(), "Output device changed: Couldn't open the output device");
    EXPECT_FALSE(transport().isPlaying());
    audio_.setOutputs({{1, "manual", "Manual", 16}});
    audio_.setDefault(1);
    play();
    EXPECT_TRUE(transport().isPlaying());
}

TEST_F(Playing, AProfileOfAnotherDeviceTakesARunningOrStartingStreamAlong) {
    audio_.setOutputs({{1, "manual", "Manual", 16}, {2, "pair", "Pair", 2}});
    settings_.change([](AppSettings& s) { s.profiles[2].deviceUID = "pair"; });
    const UUID first = settings_.value().profiles[1].id;
    const UUID other = settings_.value().profiles[2].id;
    load(file("a.wav"), true);
    pump(10);
    loop_.advance(0.034);
    listening().selectProfile(other);
    settle();
    EXPECT_EQ(engine_.deviceChannels(), 2);
    EXPECT_EQ(heardFrom(), 10 * block - 1);

    player_->stopAndReturn();
    player_->play(7000);
    audio_.setSampleRate(44100);
    listening().selectProfile(first);
    settle();
    EXPECT_TRUE(transport().isPlaying()) << "chosen while the stream was being opened";
    EXPECT_EQ(engine_.sampleRate(), 44100);
    pumpUntil([&] { return engine_.ctx().position() > 7000; });
    EXPECT_LT(engine_.ctx().position(), 8000);
}

TEST_F(Playing, OnlySettingsThatTheSoundGoesThroughReopenTheDevice) {
    const auto opens = [&](auto edit) {
        const int before = audio_.opened();
        audio_.supersede();
        settings_.change(edit);
        player_->profileChanged();
        player_->profileChanged();
        return audio_.opened() - before;
    };
    player_->profileChanged();
    EXPECT_EQ(opens([](AppSettings& s) { s.expertMode = true; }), 0);
    EXPECT_EQ(opens([](AppSettings& s) { s.upmix.enabled = true; }), 0);
    EXPECT_EQ(opens([](AppSettings& s) { s.profiles[0].name = "Stage"; }), 0) << "not the active one";
    EXPECT_EQ(opens([](AppSettings& s) { s.profiles[1].outputs = {1, 0}; }), 1);
    EXPECT_EQ(opens([](AppSettings& s) { s.activeProfileID = s.profiles[0].id; }), 1);
    EXPECT_EQ(opens([](AppSettings& s) { s.monoToCenter = false; }), 1);
}

TEST_F(Playing, ThePlayerMayGoAtAnyMoment) {
    const auto a = file("a.wav");
    player_->load(a, true);
    player_.reset();
    loop_.drain();
    player_ = makePlayer();
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
