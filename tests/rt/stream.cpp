// The stream that feeds the audio thread, under the guard: it may read files, but allocates nothing once it runs.
#include <gtest/gtest.h>

#include "audio/stream/file_source.h"
#include "audio/stream/memory_source.h"
#include "audio/stream/stream_reader.h"
#include "support/audio_files.h"
#include "support/rt_guard.h"

namespace brindlehum::test {
namespace {

// Allocations of 300 blocks round a loop, after the first 50; the reader's own and those of the libraries it calls.
uint32_t allocationsInSteadyState(std::unique_ptr<FrameSource> source, double outputRate) {
    const int channels = source->processingFormat().channels;
    StreamReader reader(std::move(source), outputRate, 0, 60000, true, 1000, 49000);
    std::vector<float> sink(size_t(channels) * 4096);
    std::vector<float*> planes;
    for (int c = 0; c < channels; ++c) { planes.push_back(sink.data() + c * 4096); }
    const auto blocks = [&](int count) {
        for (int i = 0; i < count; ++i) {
            EXPECT_TRUE(reader.fillOnce());
            while (mn_ring_read(reader.ring(), planes.data(), 4096, nullptr) > 0) {}
        }
    };
    blocks(50);
    const RealTimeScope scope;
    blocks(300);
    return scope.faults().allocations;
}

TEST(RtStream, AllocatesNothingInTheSteadyState) {
    const Planes planes = noisePlanes(6, 60000);
    const TempFolder folder;
    writeAudio(folder / "a.wav", planes);
    for (const double outputRate : {48000.0, 44100.0, 96000.0}) {
        EXPECT_EQ(allocationsInSteadyState(std::make_unique<MemorySource>(planes, 48000), outputRate), 0U)
            << outputRate;
        EXPECT_EQ(allocationsInSteadyState(std::make_unique<FileSource>(folder / "a.wav"), outputRate), 0U)
            << outputRate;
    }
}

}  // namespace
}  // namespace brindlehum::test
