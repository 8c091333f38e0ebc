// The audio system on a real PipeWire server: devices, sound to the last bit, and what happens when things go.

#include <atomic>
#include <chrono>

#include "base/error.h"
#include "platform/headless_audio.h"
#include "platform/linux_audio.h"
#include "support/pipewire/pipewire_client.h"
#include "support/pipewire/private_pipewire.h"
#include "support/pipewire/sink_recorder.h"
#include "support/platform/manual_main_loop.h"

namespace brindlehum {
namespace {

using test::PipeWireClient;
using test::PrivatePipeWire;
using test::SinkRecorder;
using testing::ElementsAre;

// A value of its own for each channel and frame, never 0, exact in a float.
float signal(int channel, uint64_t frame) {
    uint64_t x = (frame + 1) * 0x9E3779B97F4A7C15ULL ^ (uint64_t(channel) + 1) * 0xD1B54A32D192ED03ULL;
    x = (x ^ (x >> 29)) * 0xBF58476D1CE4E5B9ULL;
    return (float((x >> 40) & 0x7FFFFF) + 0.5F) / 16777216.0F;
}

class SignalSource : public RenderTarget {
public:
    int32_t render(uint32_t frames, const DeviceBuffers& buffers) noexcept override {
        if (inside_.exchange(true)) { overlaps = true; }
        if (frames > 4096 || frames != buffers.frames) { tooLarge = true; }
        for (int c = 0; c < buffers.channels; ++c) {
            float* plane = buffers.planes[c];
            if (!plane) { unlinked = true; }
            for (uint32_t i = 0; plane && i < frames; ++i) { plane[i] = signal(c, rendered + i); }
        }
        rendered += frames;
        inside_ = false;
        return 0;
    }
    std::atomic<uint64_t> rendered = 0;
    std::atomic<bool> overlaps = false;
    std::atomic<bool> tooLarge = false;
    std::atomic<bool> unlinked = false;

private:
    std::atomic<bool> inside_ = false;
};

class PipeWireAudio : public testing::Test {
protected:
    PrivatePipeWire server_;
    ManualMainLoop loop_;
    std::unique_ptr<AudioSystem> audio_ = makeAudioSystem(loop_);
    SignalSource source_;
    int changes_ = 0;

    // The outputs as the server's events bring them.
    std::optional<AudioOutputDevice> known(const std::string& uid) {
        for (const auto& output : audio_->allOutputs()) {
            if (output.uid == uid) { return output; }
        }
        return std::nullopt;
    }
    std::optional<AudioOutputDevice> device(const std::string& uid) {
        EXPECT_TRUE(loop_.runUntil([&] { return known(uid).has_value(); })) << uid;
        return known(uid);
    }
    std::unique_ptr<OutputStream> open(const std::string& uid, bool followsDefault = false) {
        return audio_->openOutput(device(uid).value().id, followsDefault, source_, [this] { ++changes_; });
    }
    void runOn(uint64_t frames) {
        const uint64_t target = source_.rendered + frames;
        EXPECT_TRUE(loop_.runUntil([&] { return source_.rendered >= target; })) << "the stream stands still";
    }
    // Another connection's round trip and one of ours deliver all events sent before them.
    void expectChanges(int count, const char* what) {
        EXPECT_TRUE(loop_.runUntil([&] { return changes_ >= count; })) << what;
        server_.addSink("last", 1);
        (void)device("last");
        server_.removeSink("last");
        EXPECT_TRUE(loop_.runUntil([&] { return !known("last"); }));
        EXPECT_EQ(changes_, count) << what;
    }
};

TEST_F(PipeWireAudio, ListsSinksAsTheyComeAndGoAndTheConfiguredOneAsDefault) {
    const auto listed = [this] {
        std::vector<std::string> texts;
        for (const auto& d : audio_->allOutputs()) {
            texts.push_back(d.uid + "|" + d.name + "|" + std::to_string(d.outputChannels));
        }
        return texts;
    };
    EXPECT_THAT(listed(), ElementsAre("sink2|Pair|2", "sink12|Room of twelve|12", "sink16|sink16|16"));
    server_.removeSink("sink12");
    server_.addSink("late", 5);
    EXPECT_TRUE(loop_.runUntil([&] { return known("late") && known("late")->outputChannels == 5; }));
    EXPECT_THAT(listed(), ElementsAre("sink2|Pair|2", "sink16|sink16|16", "late|late|5"));
    const uint32_t first = device("sink2")->id;
    const uint32_t other = device("sink16")->id;
    EXPECT_EQ(audio_->defaultOutput(), first);
    int announced = 0;
    const auto watching = audio_->watch([&] { ++announced; });
    server_.setDefaultSink("sink16");
    EXPECT_TRUE(loop_.runUntil([&] { return audio_->defaultOutput() == other; }));
    server_.removeSink("sink16");
    EXPECT_TRUE(loop_.runUntil([&] { return audio_->defaultOutput() == first; }));
    EXPECT_TRUE(loop_.runUntil([&] { return announced >= 2; }));
}

TEST_F(PipeWireAudio, BlocksLargerThanRenderTakesArriveBitExactOnEveryPortFromTheFirstFrame) {
    server_.forceClock("quantum", 8192);
    SinkRecorder recorder("sink12", 12, 20);
    const auto stream = open("sink12");
    ASSERT_EQ(stream->channels(), 12);
    stream->start();
    ASSERT_TRUE(loop_.runUntil([&] { return recorder.soundingFrames() >= 48000; }));
    stream->pause();
    const auto planes = recorder.stop();
    EXPECT_FALSE(source_.unlinked) << "rendered before the links were up";
    EXPECT_FALSE(source_.tooLarge);
    const auto first = size_t(std::ranges::find_if(planes[0], [](float x) { return x != 0; }) - planes[0].begin());
    for (int c = 0; c < 12; ++c) {
        size_t wrong = 0;
        for (size_t i = 0; i < 48000; ++i) { wrong += planes[size_t(c)].at(first + i) != signal(c, i); }
        EXPECT_EQ(wrong, 0U) << "channel " << c;
    }
}

TEST_F(PipeWireAudio, PauseReturnsOnlyWhenNoRenderRuns) {
    const auto stream = open("sink16");
    for (int round = 0; round < 20; ++round) {
        stream->start();
        runOn(1024 * (1 + round % 3));
        stream->pause();
        EXPECT_FALSE(stream->isRunning());
        const uint64_t after = source_.rendered;
        server_.setDefaultSink("sink2");  // takes a round trip
        EXPECT_EQ(source_.rendered, after);
    }
    EXPECT_FALSE(source_.overlaps);
    // At rest the server has nothing to wake it up for.
    PipeWireClient client;
    const std::lock_guard guard(client);
    const std::string node = std::to_string(client.waitForNode("brindlehum"));
    client.waitFor("the end of the links",
                   [&] { return client.find(PW_TYPE_INTERFACE_Link, PW_KEY_LINK_OUTPUT_NODE, node).empty(); });
}

TEST_F(PipeWireAudio, OnlyStreamsThatFollowTheDefaultAreToldOfItsChange) {
    server_.setDefaultSink("sink12");
    EXPECT_TRUE(loop_.runUntil([&] { return audio_->defaultOutput() == device("sink12")->id; }));
    const auto fixed = audio_->openOutput(device("sink12")->id, false, source_, [] { FAIL() << "doesn't follow"; });
    auto follower = open("sink12", true);
    server_.setDefaultSink("sink12");
    expectChanges(0, "the same default again");
    server_.setDefaultSink("sink16");
    server_.setDefaultSink("sink2");
    expectChanges(1, "default changed");
    follower.reset();
    server_.setDefaultSink("sink16");
    expectChanges(1, "closed stream");
}

TEST_F(PipeWireAudio, RateChangeIsAnnouncedOnceAndTheNextStreamHasTheNewRate) {
    auto stream = open("sink2");
    EXPECT_EQ(stream->sampleRate(), 48000);
    stream->start();
    runOn(2048);
    server_.forceClock("rate", 96000);
    expectChanges(1, "other rate");
    stream.reset();
    stream = open("sink2");
    EXPECT_EQ(stream->sampleRate(), 96000);
    stream->start();
    runOn(2048);
    expectChanges(1, "the rate it was opened for");
}

TEST_F(PipeWireAudio, AServerThatHangsIsToldFromOneThatRunsAndNoCallWaitsForIt) {
    auto stream = open("sink16");
    stream->start();
    runOn(2048);
    const uint32_t sink = device("sink16")->id;
    server_.freeze();
    const auto opened = audio_->openOutput(sink, false, source_, {});  // not known to hang yet
    opened->start();
    loop_.advance(10);
    EXPECT_EQ(audio_->server(), SoundServer::silent);
    EXPECT_EQ(changes_, 1);
    EXPECT_EQ(audio_->allOutputs(), HeadlessAudioSystem().allOutputs());
    stream->pause();
    stream.reset();
    stream = audio_->openOutput(HeadlessAudioSystem::deviceID, false, source_, {});
    EXPECT_TRUE(stream->isCurrent());
    server_.thaw();
    EXPECT_TRUE(loop_.runUntil([&] { return audio_->server() == SoundServer::running; }));
    EXPECT_FALSE(stream->isCurrent());
    EXPECT_TRUE(device("sink16"));
}

TEST_F(PipeWireAudio, AtRestTheServerIsAskedOnlyWhenSomebodyLooks) {
    ASSERT_TRUE(device("sink16"));
    loop_.advance(2);
    server_.freeze();
    loop_.advance(60);
    EXPECT_TRUE(device("sink16"));
    EXPECT_EQ(audio_->server(), SoundServer::running);
    loop_.advance(4);
    EXPECT_EQ(audio_->server(), SoundServer::silent);
    server_.thaw();
    EXPECT_TRUE(loop_.runUntil([&] { return audio_->server() == SoundServer::running; }));
}

TEST_F(PipeWireAudio, ChannelsHaveTheNamesThatTheDeviceStates) {
    EXPECT_THAT(device("sink12")->positions,
                ElementsAre("FL", "FR", "FC", "LFE", "RL", "RR", "SL", "SR", "TFL", "TFR", "TRL", "TRR"));
    EXPECT_EQ(device("sink16")->positions.at(3), "AUX3");
}

TEST(PipeWireStart, AServerThatStartsLaterIsFoundAndAnnounced) {
    PrivatePipeWire server(PrivatePipeWire::Start::later);
    ManualMainLoop loop;
    const auto audio = makeAudioSystem(loop);
    ASSERT_EQ(audio->allOutputs(), HeadlessAudioSystem().allOutputs());
    EXPECT_EQ(audio->server(), SoundServer::absent);
    int announced = 0;
    const auto watching = audio->watch([&] { ++announced; });
    server.start();
    loop.advance(1);
    // An announcement comes a turn of the loop after the state, and two of them may become one.
    EXPECT_TRUE(loop.runUntil([&] { return audio->allOutputs().size() == 3 && announced > 0; }));
    EXPECT_EQ(audio->server(), SoundServer::running);
    const int found = announced;
    server.kill();
    EXPECT_TRUE(loop.runUntil([&] { return audio->server() == SoundServer::absent && announced > found; }));
}

}  // namespace
}  // namespace brindlehum
