// HeadlessAudioSystem: pace, whole blocks, and silence after a pause.
#include "platform/headless_audio.h"

#include <algorithm>
#include <atomic>

namespace brindlehum {
namespace {

// Counts frames, and notices overlapping renders and channels without a buffer.
class Counter : public RenderTarget {
public:
    int32_t render(uint32_t frames, const DeviceBuffers& buffers) noexcept override {
        if (inside_.exchange(true)) { overlaps = true; }
        for (int c = 0; c < buffers.channels; ++c) { std::fill_n(buffers.planes[c], frames, 1.0F); }
        rendered += frames;
        inside_ = false;
        return 0;
    }
    std::atomic<uint64_t> rendered = 0;
    std::atomic<bool> overlaps = false, inside_ = false;
};

TEST(HeadlessAudio, RendersWholeBlocksInRealTimeAndNoneAfterAPause) {
    HeadlessAudioSystem audio;
    Counter counter;
    const auto stream = audio.openOutput(HeadlessAudioSystem::deviceID, true, counter, {});
    for (int round = 1; round <= 3; ++round) {
        const auto begin = std::chrono::steady_clock::now();
        const uint64_t before = counter.rendered;
        stream->start();
        stream->start();  // goes on
        while (counter.rendered < before + 4800) { std::this_thread::yield(); }
        stream->pause();
        const uint64_t after = counter.rendered;
        const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
        EXPECT_LE(double(after - before), seconds * 48000 + 2 * HeadlessAudioSystem::blockFrames);
        EXPECT_EQ(after % HeadlessAudioSystem::blockFrames, 0U);
        EXPECT_EQ(counter.rendered, after);
    }
    EXPECT_FALSE(counter.overlaps);
}

TEST(HeadlessAudio, ItsDuplexStreamHearsSilence) {
    struct Listener : RenderTarget {
        int32_t render(uint32_t frames, const DeviceBuffers& buffers) noexcept override {
            bool silent = buffers.inputChannels == 6;
            for (int c = 0; c < buffers.inputChannels; ++c) {
                silent = silent && buffers.inputs[c] &&
                         std::all_of(buffers.inputs[c], buffers.inputs[c] + frames, [](float x) { return x == 0; });
            }
            (silent ? heard : wrong) += frames;
            return 0;
        }
        std::atomic<uint64_t> heard = 0, wrong = 0;
    } listener;
    HeadlessAudioSystem audio;
    const auto bus = audio.makeBus({"FL", "FR", "FC", "LFE", "SL", "SR"});
    const auto inputs = audio.allInputs();
    const auto found = std::ranges::find(inputs, DuplexAudio::busUID, &AudioInputDevice::uid);
    ASSERT_NE(found, inputs.end());
    const auto stream = audio.openDuplex({*found, HeadlessAudioSystem::deviceID}, listener, {});
    stream->start();
    while (listener.heard + listener.wrong < 1024) { std::this_thread::yield(); }
    stream->pause();
    EXPECT_EQ(listener.wrong, 0U);
}

}  // namespace
}  // namespace brindlehum
