// Devices and servers that come and go while a sound plays.
#include "listening_test.h"
#include "platform/headless_audio.h"

namespace brindlehum::test {
namespace {

using DevicesOnPipeWire = ListeningTest;

TEST_F(DevicesOnPipeWire, AProfileOnAnotherDeviceContinuesTheSound) {
    load(toneFile(2, 30));
    expectCleanOnce([&] {
        select(room);
        SinkRecorder from("sink16", 16, 20);
        SinkRecorder to("sink2", 2, 20);
        playFrom(0);
        listen(from, 24 * block);
        const int64_t before = player_.transport().currentFrame();
        select(nearfield);
        EXPECT_TRUE(until([&] { return to.soundingFrames() >= 24 * block; }));
        EXPECT_GE(player_.transport().currentFrame(), before);
        EXPECT_EQ(app_.engine().deviceName(), "Pair");
        EXPECT_EQ(app_.engine().deviceChannels(), 2);
        player_.stopAndReturn();
        const std::string click = clickIn(from.stop(), "the device left");
        return click.empty() ? clickIn(to.stop(), "the device taken") : click;
    });
    EXPECT_FALSE(player_.message().text());
}

TEST_F(DevicesOnPipeWire, TheDefaultDeviceReplacesAnUnpluggedOne) {
    server_.setDefaultSink("sink2");
    load(toneFile(2, 30));
    expectCleanOnce([&]() -> std::string {
        SinkRecorder to("sink2", 2, 20);
        playFrom(0);
        EXPECT_TRUE(until([&] { return player_.transport().currentFrame() > 4 * block; }));
        const int64_t before = player_.transport().currentFrame();
        server_.removeSink("sink16");
        EXPECT_TRUE(until([&] { return to.soundingFrames() >= 24 * block; }));
        EXPECT_TRUE(player_.isPlaying());
        EXPECT_GE(player_.transport().currentFrame(), before);
        EXPECT_EQ(app_.engine().deviceName(), "Unavailable device");
        EXPECT_EQ(app_.engine().deviceChannels(), 2);
        EXPECT_EQ(player_.message().text(), "Sound now goes to Pair, no longer to sink16");
        const Planes heard = to.stop();

        // Plugged in again, it is used at once.
        server_.addSink("sink16", 16);
        SinkRecorder back("sink16", 16, 20);
        EXPECT_TRUE(until([&] { return back.soundingFrames() >= 8 * block; }));
        EXPECT_EQ(app_.engine().deviceName(), "sink16");
        player_.stopAndReturn();
        return clickIn(heard, "the default device");
    });
}

TEST_F(DevicesOnPipeWire, TheTransportContinuesWithoutAServerAndReturnsToIt) {
    load(toneFile(2, 30));
    playFrom(0);
    ASSERT_TRUE(until([&] { return player_.transport().currentFrame() > 4 * block; }));
    server_.kill();
    ASSERT_TRUE(until([&] {
        return app_.engine().deviceChannels() == 16 && !app_.engine().devices().allOutputs().empty() &&
               app_.engine().devices().allOutputs() == HeadlessAudioSystem().allOutputs();
    }));
    ASSERT_TRUE(until([&] { return player_.isPlaying(); })) << player_.message().text().value_or("no message");
    const int64_t before = player_.transport().currentFrame();
    ASSERT_TRUE(until([&] { return player_.transport().currentFrame() > before; })) << "the playhead stands still";
    EXPECT_FALSE(player_.message().text());

    server_.start();
    SinkRecorder back("sink16", 16, 20);
    ASSERT_TRUE(until([&] { return back.soundingFrames() >= 8 * block; }));
    EXPECT_EQ(app_.engine().deviceName(), "sink16");
}

TEST_F(DevicesOnPipeWire, AServerThatHangsIsLeftAndTakenAgainWhenItAnswers) {
    load(toneFile(2, 30));
    playFrom(0);
    ASSERT_TRUE(until([&] { return player_.transport().currentFrame() > 4 * block; }));
    server_.freeze();
    ASSERT_TRUE(until([&] { return app_.engine().device().uid == HeadlessAudioSystem::uid; }));
    EXPECT_EQ(app_.engine().devices().server(), SoundServer::silent);
    server_.thaw();
    SinkRecorder back("sink16", 16, 20);
    ASSERT_TRUE(until([&] { return back.soundingFrames() >= 8 * block; }));
    EXPECT_EQ(app_.engine().device().uid, "sink16");
}

}  // namespace
}  // namespace brindlehum::test
