// Sound: cuts that share their samples equal cuts of plain arrays, sample by sample and peak by peak.
#include "dsp/sound.h"

#include <gtest/gtest.h>

#include <limits>

#include "dsp/edit_effects.h"
#include "dsp/edit_ops.h"
#include "support/signals.h"

namespace brindlehum {
namespace {

using namespace EditOps;
using test::noise;
using Samples = std::vector<float>;

TEST(Sound, CutsEqualTheTable) {
    const Sound two(Channels{{1, 2, 3, 4}, {5, 6, 7, 8}});
    const Sound one(Channels{{1, 2, 3, 4}});
    const Sound three(Channels{{1, 2}, {3, 4}, {8, 0}});
    const struct {
        const char* what;
        Sound result;
        Channels expected;
    } cases[] = {
        {"slice", slice(two, 1, 3), {{2, 3}, {6, 7}}},
        {"slice of nothing", slice(two, 2, 2), {{}, {}}},
        {"splice", splice(two, 1, 3), {{1, 4}, {5, 8}}},
        {"splice of all", splice(two, 0, 4), {{}, {}}},
        {"insert", insert(two, 4, Sound(Channels{{9}, {10}})), {{1, 2, 3, 4, 9}, {5, 6, 7, 8, 10}}},
        {"insert mono into stereo", insert(two, 1, Sound(Channels{{9, 9}})), {{1, 9, 9, 2, 3, 4}, {5, 0, 0, 6, 7, 8}}},
        {"insert stereo into mono", insert(one, 0, Sound(Channels{{9}, {10}})), {{9, 1, 2, 3, 4}}},
        {"insert nothing", insert(two, 1, Sound()), two.gather()},
        {"silence", silence(two, 1, 4), {{1, 0, 0, 0}, {5, 0, 0, 0}}},
        {"replace by mono", replaceRegion(two, 1, 3, Sound(Channels{{9}})), {{1, 9, 4}, {5, 9, 8}}},
        {"replace by longer",
         replaceRegion(two, 3, 4, Sound(Channels{{9, 8, 7}, {6, 5, 4}})),
         {{1, 2, 3, 9, 8, 7}, {5, 6, 7, 6, 5, 4}}},
        {"replace by nothing", replaceRegion(two, 0, 3, Sound(Channels{{}})), {{4}, {8}}},
        {"mono", monoFold(three, 0, 1), {{4, 2}, {4, 4}, {4, 0}}},
        {"mono of none", monoFold(Sound(), 0, 0), {}},
        {"swap", swapLR(three, 1, 2), {{1, 4}, {3, 2}, {8, 0}}},
        {"swap of mono", swapLR(one, 0, 4), one.gather()},
    };
    for (const auto& c : cases) { EXPECT_EQ(c.result.gather(), c.expected) << c.what; }
    EXPECT_THROW(Sound(Channels{{1, 2}, {1}}), std::invalid_argument);
}

// The slow twin of a document: plain arrays.
struct Twin {
    Channels samples;
    void replace(int64_t start, int64_t end, const Channels& with) {
        for (size_t c = 0; c < samples.size(); ++c) {
            auto& x = samples[c];
            x.erase(x.begin() + start, x.begin() + end);
            x.insert(x.begin() + start, with[c].begin(), with[c].end());
        }
    }
};

PeakRange plainPeaks(const Samples& x, int64_t start, int64_t end) {
    if (start == end) { return {}; }
    const auto [low, high] = std::minmax_element(x.begin() + start, x.begin() + end);
    return {*low, *high};
}

TEST(Sound, RandomEditsEqualPlainArrays) {
    for (uint32_t seed = 1; seed <= 4; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        std::mt19937 random(seed);
        const auto below = [&](int64_t n) { return int64_t(random() % uint64_t(n)); };
        // Longer than a block, so that cuts meet the middles and the ends of blocks.
        Twin twin{{noise(150000, seed), noise(150000, seed + 100)}};
        Sound sound(twin.samples);
        Sound clip = slice(sound, 100, 70000);
        for (int step = 0; step < 400; ++step) {
            const int64_t total = sound.frames();
            const int64_t start = below(total + 1), end = start + below(std::min<int64_t>(total - start, 90000) + 1);
            switch (below(5)) {
                case 0:
                    sound = splice(sound, start, end);
                    twin.replace(start, end, {{}, {}});
                    break;
                case 1:
                    if (total > 600000) { break; }
                    twin.replace(start, start, clip.gather());
                    sound = insert(sound, start, clip);
                    break;
                case 2: {
                    const Samples zeros(size_t(end - start));
                    sound = silence(sound, start, end);
                    twin.replace(start, end, {zeros, zeros});
                    break;
                }
                case 3:
                    sound = swapLR(sound, start, end);
                    std::swap_ranges(twin.samples[0].begin() + start, twin.samples[0].begin() + end,
                                     twin.samples[1].begin() + start);
                    break;
                default:
                    clip = slice(sound, start, end);
            }
            ASSERT_EQ(sound.frames(), int64_t(twin.samples[0].size()));
            const int64_t from = below(sound.frames() + 1), to = from + below(sound.frames() - from + 1);
            const PeakRange exact = plainPeaks(twin.samples[1], from, to);
            ASSERT_EQ(sound.track(1).peaks(from, to), exact) << from << ".." << to;
            if (from == to) { continue; }
            const int64_t slack = 1 << below(16);
            const PeakRange about = sound.track(1).peaksAbout(from, to, slack);
            const PeakRange most =
                plainPeaks(twin.samples[1], std::max<int64_t>(from - slack, 0), std::min(to + slack, sound.frames()));
            ASSERT_TRUE(most.low <= about.low && about.low <= exact.low && exact.high <= about.high &&
                        about.high <= most.high)
                << from << ".." << to << " with " << slack;
        }
        ASSERT_EQ(sound.gather(), twin.samples);
    }
}

TEST(Sound, CutsShareTheirSamplesAndHealWhenTheyAreUndone) {
    const Sound whole(Channels{noise(300000, 1)});
    const Sound healed = insert(splice(whole, 70000, 200000), 70000, slice(whole, 70000, 200000));
    EXPECT_EQ(healed.track(0).pieces().size(), whole.track(0).pieces().size());
    for (size_t i = 0; i < healed.track(0).pieces().size(); ++i) {
        EXPECT_EQ(healed.track(0).pieces()[i].block, whole.track(0).pieces()[i].block);
    }
}

TEST(Sound, ABuilderShowsWholeBlocksWhileTheRestArrives) {
    const Channels all = {noise(200000, 1), noise(200000, 2)};
    SoundBuilder builder(2);
    for (int64_t at = 0; at < 200000; at += 777) {
        const float* planes[] = {all[0].data() + at, all[1].data() + at};
        builder.append(planes, std::min<int64_t>(777, 200000 - at));
    }
    EXPECT_EQ(builder.soFar().frames(), 3 * SoundBlock::longest);
    EXPECT_EQ(builder.finish().gather(), all);
}

TEST(Sound, PeaksLeaveOutWhatIsNoNumber) {
    Samples x = noise(1000, 3);
    x[300] = std::numeric_limits<float>::quiet_NaN();
    const PeakRange range = Track(x).peaks(0, 1000);
    x[300] = 0;
    EXPECT_EQ(range, plainPeaks(x, 0, 1000));
}

TEST(Sound, FilteredAndFadedDocumentsEqualThoseInArrays) {
    const double sr = 8000;
    for (const size_t frames : {100000UL, 8400UL, 8401UL, 3000UL, 1UL}) {
        const Channels samples = {noise(frames, 1), noise(frames, 2)};
        EXPECT_EQ(topAndTails(Sound(samples), sr).gather(), topAndTails(samples, sr)) << frames;
    }
    const Samples x = noise(100000, 1);
    EXPECT_EQ(hiPass200(Sound(Channels{x}), sr).gather()[0], highPass(200, sr).run(x));
}

}  // namespace
}  // namespace brindlehum
