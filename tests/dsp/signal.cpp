// Signal: against plain twins and at the limits of its contracts.
#include "dsp/signal.h"

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <limits>
#include <numbers>

#include "dsp/signal_spectrum.h"
#include "support/signals.h"

namespace brindlehum {
namespace {

TEST(Signal, MonoIsTheMeanOfAnyCountOfChannels) {
    EXPECT_TRUE(Signal::mono({}).empty());
    for (const size_t channels : {1U, 2U, 3U, 64U}) {
        std::vector<std::vector<float>> planes;
        for (size_t c = 0; c < channels; ++c) { planes.push_back(test::noise(9001, uint32_t(c + 1))); }
        const auto mono = Signal::mono(planes);
        ASSERT_EQ(mono.size(), 9001U);
        for (size_t i = 0; i < mono.size(); ++i) {
            double sum = 0;
            for (const auto& plane : planes) { sum += plane[i]; }
            ASSERT_NEAR(mono[i], sum / double(channels), 1e-6) << channels << " channels, sample " << i;
        }
    }
}

TEST(Signal, RmsClampsItsRange) {
    const auto x = test::noise(1003, 5);
    double squares = 0;
    for (size_t i = 10; i < 1003; ++i) { squares += double(x[i]) * double(x[i]); }
    EXPECT_NEAR(Signal::rms(x, 10, 5000), std::sqrt(squares / 993), 1e-7);
    EXPECT_EQ(Signal::rms(x, -7, 2000), Signal::rms(x, 0, 1003));
    for (const auto& [from, to] : {std::pair<int64_t, int64_t>{5, 5}, {9, 3}, {2000, 3000}, {-9, -2}}) {
        EXPECT_EQ(Signal::rms(x, from, to), 0) << from << " to " << to;
    }
}

TEST(Signal, HannWindowIsSymmetricAndEndsAtZero) {
    EXPECT_EQ(Signal::hanning(0), std::vector<float>{1});
    EXPECT_EQ(Signal::hanning(1), std::vector<float>{1});
    const auto w = Signal::hanning(1024);
    EXPECT_EQ(w.front(), 0);
    EXPECT_NEAR(w.back(), 0, 1e-12);
    for (size_t i = 0; i < 512; ++i) { ASSERT_NEAR(w[i], w[1023 - i], 1e-7); }
    EXPECT_NEAR(w[100], std::pow(std::sin(std::numbers::pi * 100 / 1023), 2), 1e-7);
}

TEST(Signal, AutocorrelationEqualsThePlainSum) {
    for (const size_t count : {1U, 2U, 15U, 16U, 17U, 100U, 700U}) {
        const auto x = test::noise(count, uint32_t(count));
        for (const int64_t maxLag : {int64_t{0}, int64_t{1}, int64_t{17}, int64_t{64}, int64_t(count), int64_t{2000}}) {
            const auto r = Signal::autocorrelation(x, maxLag);
            ASSERT_EQ(int64_t(r.size()), std::max<int64_t>(std::min(int64_t(count), maxLag), 1));
            for (size_t k = 0; k < r.size(); ++k) {
                double sum = 0;
                for (size_t i = 0; i + k < count; ++i) { sum += double(x[i]) * double(x[i + k]); }
                ASSERT_NEAR(r[k], sum, 1e-6 * double(count)) << count << " samples, lag " << k;
            }
        }
    }
    EXPECT_EQ(Signal::autocorrelation({}, 50), std::vector<float>{0});
}

TEST(Signal, ResampleKeepsTimeAndLeavesNearRatesAlone) {
    const auto x = test::noise(5000, 3);
    EXPECT_EQ(Signal::resample(x, 22050.4, 22050), x);
    EXPECT_EQ(Signal::resample(x, 22050.5, 22050), x);
    EXPECT_NE(Signal::resample(x, 22051, 22050), x);
    EXPECT_EQ(Signal::resample(x, 0, 22050), x) << "no converter: unchanged";
    EXPECT_TRUE(Signal::resample({}, 48000, 22050).empty());
    const auto out = Signal::resample(test::sine(48000, 440, 48000), 48000, 22050);
    const auto want = test::sine(22050, 440, 22050);
    ASSERT_EQ(out.size(), want.size());
    for (size_t i = 2000; i < 20000; ++i) { ASSERT_NEAR(out[i], want[i], 1e-4) << "sample " << i; }
}

TEST(Signal, UnusableSamplesBecomeSilence) {
    std::vector<float> store;
    const auto clean = test::noise(10000, 8);
    EXPECT_EQ(Signal::usable(clean, store).data(), clean.data()) << "copied for nothing";
    const float inf = std::numeric_limits<float>::infinity();
    for (const float bad : {std::numeric_limits<float>::quiet_NaN(), inf, -inf, 3e38F, -2e12F}) {
        for (const size_t at : {0U, 4095U, 4096U, 9999U}) {
            auto x = clean;
            x[at] = bad;
            auto want = clean;
            want[at] = 0;
            const auto got = Signal::usable(x, store);
            EXPECT_TRUE(std::equal(got.begin(), got.end(), want.begin(), want.end())) << bad << " at " << at;
        }
    }
}

TEST(HannSpectrum, MagnitudesAreThoseOfThePlainTransform) {
    for (const int size : {4, 64, 1024}) {
        const auto x = test::noise(size_t(size), uint32_t(size));
        const auto window = Signal::hanning(size);
        HannSpectrum spectrum(size);
        std::vector<float> magnitudes(size_t(spectrum.bins()));
        spectrum.magnitudes(x.data(), magnitudes.data());
        for (int k = 0; k <= size / 2; ++k) {
            std::complex<double> sum;
            for (int i = 0; i < size; ++i) {
                const double turn = -2 * std::numbers::pi * double(int64_t(k) * i % size) / size;
                sum += double(x[size_t(i)]) * double(window[size_t(i)]) * std::polar(1.0, turn);
            }
            ASSERT_NEAR(magnitudes[size_t(k)], std::abs(sum), 2e-6 * size) << "size " << size << ", bin " << k;
        }
    }
}

}  // namespace
}  // namespace brindlehum
