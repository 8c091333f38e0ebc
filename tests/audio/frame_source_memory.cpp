// MemorySource: its frames and its metronome against a slow twin.
#include "audio/stream/frame_source.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "frame_reads.h"
#include "support/signals.h"

namespace brindlehum::test {
namespace {

// The whole signal with every click laid over it one sample at a time.
Planes withClicks(Planes whole, double rate, const std::vector<Click>& clicks) {
    const auto soundFrames = int64_t(std::floor(rate * 0.045));
    for (const Click& click : clicks) {
        for (int64_t i = 0; i < soundFrames; ++i) {
            const double t = double(i) / rate;
            const double sound = click.accent ? 0.8 * std::sin(2 * M_PI * 1600 * t) * std::exp(-70 * t)
                                              : 0.5 * std::sin(2 * M_PI * 1000 * t) * std::exp(-90 * t);
            const int64_t at = click.frame + i;
            for (size_t c = 0; c < std::min<size_t>(whole.size(), 2) && at >= 0; ++c) {
                if (at < int64_t(whole[c].size())) { whole[c][size_t(at)] += float(sound); }
            }
        }
    }
    return whole;
}

TEST(MemorySource, MixesItsClicksAsASlowTwinDoes) {
    const uint32_t seed = std::random_device()();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 engine(seed);
    const auto between = [&](int64_t from, int64_t to) { return std::uniform_int_distribution(from, to)(engine); };
    for (const int channels : {1, 2, 3, 5}) {
        for (const double rate : {8000.0, 44100.0, 48000.5}) {
            const Planes whole = noisePlanes(channels, 20000, seed);
            std::vector<Click> clicks;
            for (int i = 0; i < 30; ++i) { clicks.push_back({between(-3000, 21000), between(0, 1) == 1}); }
            clicks.push_back({19990, true});   // cut at the end of the data
            clicks.push_back({19990, false});  // two at once
            MemorySource plain(whole, rate);
            MemorySource clicking(whole, rate, clicks);
            const Planes wanted = withClicks(whole, rate, clicks);
            // A plane that the source hasn't got is cleared, and a second one hears the clicks all the same.
            Planes mono = wanted;
            if (channels == 1) {
                Planes silentSecond = {whole[0], std::vector<float>(20000)};
                mono = withClicks(std::move(silentSecond), rate, clicks);
            }
            for (int round = 0; round < 60; ++round) {
                const int64_t position = between(-10, 20100);
                const int frames = int(between(0, round % 2 == 0 ? 5000 : 3));
                const int planes = int(between(1, 7));
                expectRead(plain, whole, planes, position, frames);
                expectRead(clicking, planes > 1 ? mono : wanted, planes, position, frames);
            }
        }
    }
}

TEST(MemorySource, NeedsEqualChannelsButNoneAtAll) {
    EXPECT_THROW(MemorySource({std::vector<float>(7), std::vector<float>(6)}, 44100), std::invalid_argument);
    int got = -1;
    MemorySource nothing({}, 44100, {{0, true}});
    EXPECT_EQ(nothing.processingFormat().channels, 1);
    read(nothing, 1, 0, 10, got);
    EXPECT_EQ(got, 0);
}

}  // namespace
}  // namespace brindlehum::test
