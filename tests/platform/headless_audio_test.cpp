// The outputs that need no sound server: the paced one, and the one that tests drive.
#include "platform/headless_audio.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cmath>

#include "audio/error.h"
#include "platform/manual_audio.h"
#include "platform/manual_main_loop.h"

namespace brindlehum {
namespace {

// Writes a ramp that goes on from block to block, and checks that no two renders overlap.
class Counter : public RenderTarget {
public:
    int32_t render(uint32_t frames, const DeviceBuffers& buffers) noexcept override {
        if (inside_.exchange(true)) overlaps = true;
        if (frames != buffers.frames) odd = true;
        for (int c = 0; c < buffers.channels; ++c) {
            for (uint32_t i = 0; i < frames; ++i) buffers.planes[c][i] = float(rendered + i) + float(c) / 64;
        }
        rendered += frames;
        inside_ = false;
        return 0;
    }
    std::atomic<uint64_t> rendered = 0;
    std::atomic<bool> overlaps = false;
    std::atomic<bool> odd = false;

private:
    std::atomic<bool> inside_ = false;
};

TEST(HeadlessAudio, ShowsOneDeviceAndRefusesOthers) {
    HeadlessAudioSystem audio;
    const auto outputs = audio.allOutputs();
    ASSERT_EQ(outputs.size(), 1U);
    EXPECT_EQ(outputs[0].uid, "brindlehum.headless");
    EXPECT_EQ(outputs[0].outputChannels, 16);
    EXPECT_EQ(audio.defaultOutput(), outputs[0].id);
    Counter counter;
    EXPECT_THROW((void)audio.openOutput(77, false, counter, {}), Error);
}

TEST(HeadlessAudio, RendersWholeBlocksNoFasterThanRealTimeAndNothingOncePaused) {
    HeadlessAudioSystem audio;
    Counter counter;
    const auto stream = audio.openOutput(HeadlessAudioSystem::deviceID, true, counter, {});
    EXPECT_FALSE(stream->isRunning());
    for (int round = 1; round <= 3; ++round) {
        const auto begin = std::chrono::steady_clock::now();
        const uint64_t before = counter.rendered;
        stream->start();
        stream->start();  // goes on
        while (counter.rendered < before + 4800) std::this_thread::yield();
        stream->pause();
        const uint64_t after = counter.rendered;
        const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
        EXPECT_FALSE(stream->isRunning());
        EXPECT_LE(double(after - before), seconds * 48000 + 2 * HeadlessAudioSystem::blockFrames);
        EXPECT_EQ(after % HeadlessAudioSystem::blockFrames, 0U);
        EXPECT_EQ(counter.rendered, after);
    }
    EXPECT_FALSE(counter.overlaps);
    EXPECT_FALSE(counter.odd);
}

class ManualAudio : public testing::Test {
protected:
    ManualMainLoop loop_;
    ManualAudioSystem audio_{loop_};
    Counter counter_;
    int changes_ = 0;
    std::unique_ptr<OutputStream> open(uint32_t id, bool followsDefault) {
        return audio_.openOutput(id, followsDefault, counter_, [this] { ++changes_; });
    }
};

TEST_F(ManualAudio, PumpRendersTheRunningStreamAndNothingElse) {
    audio_.setOutputs({{1, "a", "A", 2}, {2, "b", "B", 5}});
    const auto first = open(1, false);
    const auto second = open(2, false);
    EXPECT_TRUE(audio_.pump(64).empty());
    first->start();
    EXPECT_EQ(audio_.pump(64).size(), 2U);
    second->start();
    const auto planes = audio_.pump(100);
    ASSERT_EQ(planes.size(), 5U);
    EXPECT_EQ(planes[4][99], 64 + 99 + 4.0F / 64);
    second->pause();
    EXPECT_EQ(audio_.pump(1).size(), 2U);
    audio_.setStartingFails(true);
    EXPECT_THROW(second->start(), Error);
    audio_.setOpeningFails(true);
    EXPECT_THROW((void)open(1, false), Error);
}

TEST_F(ManualAudio, ChangesReachTheStreamsTheyConcernOnceThroughTheLoop) {
    const AudioOutputDevice a{1, "a", "A", 2};
    const AudioOutputDevice b{2, "b", "B", 8};
    struct {
        const char* what;
        bool follows;
        std::function<void()> happens;
        int expected;
    } const cases[] = {
        {"device gone", false, [&] { audio_.setOutputs({b}); }, 1},
        {"other device gone", false, [&] { audio_.setOutputs({a}); }, 0},
        {"fewer channels", false,
         [&] {
             audio_.setOutputs({{1, "a", "A", 1}, b});
         },
         1},
        {"default moved, followed", true, [&] { audio_.setDefault(2); }, 1},
        {"default moved, not followed", false, [&] { audio_.setDefault(2); }, 0},
        {"twice", true, [&] { audio_.setDefault(2), audio_.setOutputs({b}); }, 1},
    };
    for (const auto& c : cases) {
        audio_.setOutputs({a, b});
        audio_.setDefault(1);
        changes_ = 0;
        auto stream = open(1, c.follows);
        c.happens();
        EXPECT_EQ(changes_, 0) << c.what;
        loop_.drain();
        EXPECT_EQ(changes_, c.expected) << c.what;
    }
    auto stream = open(2, false);
    audio_.setOutputs({});
    changes_ = 0;
    stream.reset();
    loop_.drain();
    EXPECT_EQ(changes_, 0) << "called after the stream had gone";
}

}  // namespace
}  // namespace brindlehum
