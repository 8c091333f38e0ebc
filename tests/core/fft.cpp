// mn_fft: against the defining sum, the way back, sizes, and planning on several threads at once.
#include <gtest/gtest.h>

#include <complex>
#include <memory>
#include <numbers>
#include <thread>

#include "core/mn_fft.h"
#include "support/signals.h"

namespace test = brindlehum::test;

namespace {

using FFT = std::unique_ptr<mn_fft, decltype(&mn_fft_destroy)>;

constexpr int maxSize = 2048;

// Errors of a transform of noise, and of its way back, in dB.
struct Errors {
    double forward, inverse;
};
Errors errorsAt(int size, uint32_t seed) {
    alignas(64) float time[maxSize];
    alignas(64) float spectrum[maxSize + 2];
    const FFT fft(mn_fft_create(size), mn_fft_destroy);
    const std::vector<float> x = test::noise(size_t(size), seed);
    std::ranges::copy(x, time);
    mn_fft_forward(fft.get(), time, spectrum);
    EXPECT_TRUE(std::ranges::equal(x, std::span(time, size_t(size)))) << "forward changed its source";
    double error = 0, energy = 0;
    for (int bin = 0; bin < mn_fft_bins(fft.get()); ++bin) {
        std::complex<double> sum = 0;
        for (int i = 0; i < size; ++i) {
            sum += double(x[size_t(i)]) * std::polar(1.0, -2 * std::numbers::pi * (int64_t(bin) * i % size) / size);
        }
        error += std::norm(std::complex<double>(spectrum[2 * bin], spectrum[2 * bin + 1]) - sum);
        energy += std::norm(sum);
    }
    mn_fft_inverse(fft.get(), spectrum, time);
    std::vector<float> back(time, time + size);
    for (float& sample : back) { sample /= float(size); }
    return {10 * std::log10(error / energy), test::errorDb(back, x)};
}

}  // namespace

TEST(FFT, EqualsTheDefiningSumAndComesBackTimesItsSize) {
    for (const int size : {4, 8, 64, 512, maxSize}) {
        const Errors errors = errorsAt(size, 17);
        EXPECT_LT(errors.forward, -125) << size;
        EXPECT_LT(errors.inverse, -125) << size;
    }
}

// Sizes that no other test has planned.
TEST(FFT, SeveralThreadsMayPlanAtOnce) {
    std::vector<double> worst(4, -400);
    std::vector<std::thread> threads;
    for (size_t t = 0; t < worst.size(); ++t) {
        threads.emplace_back([&worst, t] {
            for (const int size : {16, 32, 128, 256, 1024}) {
                worst[t] = std::max(worst[t], errorsAt(size, uint32_t(t)).inverse);
            }
        });
    }
    for (std::thread& thread : threads) { thread.join(); }
    for (const double error : worst) { EXPECT_LT(error, -125); }
}
