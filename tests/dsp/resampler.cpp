// Resampler: the passband's curve, the level of aliases, blocks against the whole, and where a stream ends.
#include <gtest/gtest.h>

#include <algorithm>
#include <numbers>
#include <random>
#include <stdexcept>

#include "dsp/resampler.h"
#include "support/signals.h"

using brindlehum::Resampler;
namespace test = brindlehum::test;

namespace {

struct Rates {
    double from, to;
};
const Rates allRates[] = {{44100, 48000}, {48000, 44100}, {96000, 48000}, {48000, 192000}, {44100, 44101.3}};

// The same conversion through blocks of `frames` output frames and input in blocks of 1 to 700.
std::vector<float> stream(const std::vector<float>& input, Rates rates, int frames) {
    Resampler resampler(rates.from, rates.to, 2);
    std::vector<float> negative = input;
    for (float& x : negative) { x = -x; }
    size_t read = 0;
    std::vector<float> result;
    auto left = std::vector<float>(size_t(frames));
    std::vector<float> right(left.size());
    float* outputs[] = {left.data(), right.data()};
    for (;;) {
        const int got = resampler.process(outputs, frames, [&](int limit, const float** planes) {
            const size_t n = std::min({size_t(limit), 1 + read % 700, input.size() - read});
            planes[0] = input.data() + read;
            planes[1] = negative.data() + read;
            read += n;
            return int(n);
        });
        for (size_t i = 0; i < size_t(got); ++i) { EXPECT_EQ(left[i], -right[i]); }
        result.insert(result.end(), left.begin(), left.begin() + got);
        if (got < frames) { return result; }
    }
}

}  // namespace

// The input is a sum of sines of random frequency, phase and level up to the edge of the passband; the plain twin
// evaluates them at the output's own instants. An error below -120 dB proves the level within 0.001 dB and the delay at
// once.
TEST(Resampler, SinesOfThePassbandKeepTheirCurve) {
    std::mt19937 engine(41);
    std::uniform_real_distribution<double> uniform(0, 1);
    for (const double from : {8000.0, 11025.0, 32000.0, 44100.0, 48000.0, 96000.0, 384000.0}) {
        for (const double to : {22050.0, 44101.3, 48000.0, 192000.0}) {
            constexpr int sines = 40;
            const double edge = 0.9 * std::min(from, to) / 2;
            std::vector<float> input(size_t(from / 4));
            std::vector<float> want(size_t(std::llround(double(input.size()) * to / from)));
            for (int k = 0; k < sines; ++k) {
                const double hz = edge * uniform(engine);
                const double phase = 2 * std::numbers::pi * uniform(engine);
                const double level = uniform(engine) / sines;
                const auto addTo = [&](std::vector<float>& x, double rate) {
                    const std::vector<float> sine = test::sine(x.size(), hz, rate, level, phase);
                    for (size_t i = 0; i < x.size(); ++i) { x[i] += sine[i]; }
                };
                addTo(input, from);
                addTo(want, to);
            }
            const std::vector<float> output = Resampler::convert(input, from, to);
            ASSERT_EQ(output.size(), want.size());
            // The cut ends ring.
            const auto middle = [](const std::vector<float>& x) {
                return std::vector<float>(x.begin() + long(x.size() / 4), x.end() - long(x.size() / 4));
            };
            EXPECT_LT(test::errorDb(middle(output), middle(want)), -120) << from << " to " << to;
        }
    }
}

TEST(Resampler, FrequenciesAboveTheOutputsRangeAreGone) {
    const Rates down[] = {{96000, 48000}, {48000, 44100}, {192000, 44100}};
    for (const auto [from, to] : down) {
        for (const double above : {1.0, 1.05, 1.08}) {
            const double hz = above * to / 2 + 1;
            if (hz >= from / 2) { continue; }
            std::vector<float> output = Resampler::convert(test::sine(40000, hz, from), from, to);
            double energy = 0;
            size_t counted = 0;
            for (size_t i = output.size() / 4; i < output.size() * 3 / 4; ++i, ++counted) {
                energy += double(output[i]) * output[i];
            }
            EXPECT_LT(10 * std::log10(2 * energy / double(counted) + 1e-30), -140) << from << " to " << to << " " << hz;
        }
    }
}

TEST(Resampler, AnyBlockSizeGivesTheWholeSignal) {
    const std::vector<float> input = test::noise(30011, 9);
    for (const Rates rates : allRates) {
        const std::vector<float> whole = Resampler::convert(input, rates.from, rates.to);
        EXPECT_EQ(whole.size(), size_t(std::llround(30011 * rates.to / rates.from)));
        for (const int frames : {1, 480, 4096}) {
            SCOPED_TRACE(testing::Message() << rates.from << " to " << rates.to << " by " << frames);
            const std::vector<float> blocks = stream(input, rates, frames);
            EXPECT_EQ(blocks.size(), whole.size());
            EXPECT_LT(test::errorDb(blocks, whole), -130);
        }
    }
}

TEST(Resampler, ShortInputHasItsLengthAndUnusableRatesAreRefused) {
    Resampler resampler(44100, 48000, 1);
    std::vector<float> out(64);
    float* outputs[] = {out.data()};
    int asked = 0;
    const auto pull = [&](int, const float**) { return ++asked, 0; };
    EXPECT_EQ(resampler.process(outputs, 64, pull), 0);
    EXPECT_EQ(resampler.process(outputs, 64, pull), 0);
    EXPECT_EQ(asked, 1);
    for (const size_t length : {1UL, 2UL, 99UL}) {
        EXPECT_EQ(stream(std::vector<float>(length, 0.5F), {44100, 96000}, 64).size(),
                  std::llround(double(length) * 96000 / 44100));
    }
    EXPECT_TRUE(Resampler::convert({}, 44100, 48000).empty());
    EXPECT_THROW(Resampler(0, 48000, 1), std::runtime_error);
    EXPECT_THROW(Resampler(44100, std::nan(""), 1), std::runtime_error);
    EXPECT_THROW(Resampler(44100, 48000, 0), std::runtime_error);
}
