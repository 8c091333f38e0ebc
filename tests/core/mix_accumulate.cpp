// The matrix kernel: every version bit for bit against a plain twin.
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <random>
#include <vector>

#include "core/mn_mix.h"
#include "fused.h"
#include "mix_kernel.h"
#include "support/signals.h"

namespace {

using brindlehum::core::Tap;

struct Planes {
    Planes(int channels, int frames, uint32_t seed) {
        for (int c = 0; c < channels; ++c) {
            samples.push_back(brindlehum::test::noise(size_t(frames), seed + uint32_t(c)));
        }
        for (auto& plane : samples) { planes.push_back(plane.data()); }
    }
    std::vector<std::vector<float>> samples;
    std::vector<float*> planes;
};

// Sparse: zeros, negative zeros and tiny values among the gains. Dense: at most one input is skipped, by all rows.
std::vector<float> randomMatrix(int rows, int channels, bool sparse, uint32_t seed) {
    std::vector<float> matrix = brindlehum::test::noise(size_t(rows) * size_t(channels), seed);
    std::mt19937 random(seed);
    for (size_t i = 0; i < matrix.size(); ++i) {
        const auto kind = random() % 8;
        if (sparse && kind == 0) { matrix[i] = 0; }
        if (sparse && kind == 1) { matrix[i] = -0.0F; }
        if (sparse && kind == 2) { matrix[i] *= 1e-20F; }
        if (!sparse && channels > 2 && i % size_t(channels) == 1) { matrix[i] = 0; }
    }
    return matrix;
}

void twin(const mn_mix_config& config, const Planes& in, int frames, Planes& out, const float* ramp) {
    for (int r = 0; r < config.rows; ++r) {
        for (int c = 0; c < config.in_channels; ++c) {
            const float gain = config.matrix[r * config.in_channels + c];
            if (gain == 0) { continue; }
            for (int i = 0; i < frames; ++i) {
                volatile const float g = ramp != nullptr ? gain * ramp[i] : gain;
                float& y = out.samples[size_t(r)][size_t(i)];
                y = std::fma(g, in.samples[size_t(c)][size_t(i)], y);
            }
        }
    }
}

}  // namespace

TEST(MixAccumulate, EqualsThePlainTwinBitForBit) {
    const struct {
        int channels, rows;
        bool sparse;
    } shapes[] = {{1, 1, false}, {2, 12, true},  {16, 16, true}, {16, 16, false},
                  {9, 7, false}, {64, 32, true}, {67, 9, false}, {130, 2, true}};
    for (const auto [channels, rows, sparse] : shapes) {
        for (const int frames : {1, 2, 7, 8, 31, 64, 129, 256, 257, 1023, 4096}) {
            for (const bool ramped : {false, true}) {
                SCOPED_TRACE(testing::Message()
                             << channels << " to " << rows << ", " << frames << (ramped ? " ramped" : ""));
                const auto seed = uint32_t(channels * 10000 + frames);
                const std::vector<float> matrix = randomMatrix(rows, channels, sparse, seed);
                const mn_mix_config config{channels, rows, 0, 0, 1, matrix.data(), nullptr, 0};
                const std::vector<float> ramp = brindlehum::test::noise(size_t(frames), seed + 7);
                const Planes in(channels, frames, seed + 100);
                Planes out(rows, frames, seed + 500);
                Planes expected(rows, frames, seed + 500);
                const float* gains = ramped ? ramp.data() : nullptr;
                mn_mix_accumulate(&config, in.planes.data(), frames, out.planes.data(), rows, gains);
                twin(config, in, frames, expected, gains);
                ASSERT_EQ(out.samples, expected.samples);
            }
        }
    }
}

TEST(MixAccumulate, EveryVersionOfTheRowKernelGivesTheSameBits) {
    constexpr int rows = brindlehum::core::rowGroup;
    const Planes in(5, 333, 3);
    const std::vector<float> gains = brindlehum::test::noise(size_t(5 * rows), 4);
    const std::vector<float> ramp = brindlehum::test::noise(333, 5);
    std::vector<Tap> taps;
    for (size_t c = 0; c < 5; ++c) {
        taps.push_back({{gains[c], gains[5 + c], gains[10 + c], gains[15 + c]}, in.planes[c]});
    }
    const struct {
        int rows;
        const float* ramp;
    } cases[] = {{1, nullptr}, {1, ramp.data()}, {rows, nullptr}};
    for (const auto& c : cases) {
        Planes plain(rows, 333, 6);
        Planes fast(rows, 333, 6);
        brindlehum::core::mixRowsPlain(taps.data(), 5, c.rows, c.ramp, 333, plain.planes.data());
        brindlehum::core::fastestMixRows()(taps.data(), 5, c.rows, c.ramp, 333, fast.planes.data());
        EXPECT_EQ(plain.samples, fast.samples);
    }
}

// Bit patterns of all kinds: normal, subnormal, infinite, NaN; products that cancel; sums that lie halfway.
TEST(MixAccumulate, EmulatedFusedMultiplyAddIsRoundedOnce) {
    std::mt19937 random(2024);
    const auto any = [&] { return std::bit_cast<float>(uint32_t(random())); };
    for (int i = 0; i < 2000000; ++i) {
        const float a = any();
        const float b = any();
        float c = any();
        if (i % 4 == 1) { c = -a * b; }
        if (i % 4 == 2) { c = std::ldexp(a * b, int(random() % 60) - 30); }
        const float expected = std::fma(a, b, c);
        const float got = brindlehum::core::emulatedMultiplyAdd(a, b, c);
        if (std::isnan(expected)) {
            ASSERT_TRUE(std::isnan(got));
        } else {
            ASSERT_EQ(std::bit_cast<uint32_t>(got), std::bit_cast<uint32_t>(expected)) << a << " " << b << " " << c;
        }
    }
}
