// RealFFT against the defining sum, and its promises on alignment and inputs.
#include <gtest/gtest.h>

#include <complex>
#include <numbers>
#include <stdexcept>
#include <thread>
#include <vector>

#include "dsp/real_fft.h"
#include "support/signals.h"

using brindlehum::RealFFT;
namespace test = brindlehum::test;

namespace {

using Spectrum = std::vector<std::complex<float>>;

std::complex<double> transformAt(const std::vector<float>& x, int bin) {
    std::complex<double> sum = 0;
    for (size_t i = 0; i < x.size(); ++i) {
        sum += double(x[i]) * std::polar(1.0, -2 * std::numbers::pi * double(bin) * double(i) / double(x.size()));
    }
    return sum;
}

}  // namespace

TEST(RealFFT, EqualsTheDefiningSum) {
    for (const int size : {4, 8, 64, 512, 2048}) {
        SCOPED_TRACE(size);
        RealFFT fft(size);
        ASSERT_EQ(fft.bins(), size / 2 + 1);
        const std::vector<float> x = test::noise(size_t(size), 17);
        Spectrum spectrum(size_t(fft.bins()));
        fft.forward(x.data(), spectrum.data());
        double error = 0;
        double energy = 0;
        for (int bin = 0; bin < fft.bins(); ++bin) {
            const auto expected = transformAt(x, bin);
            error += std::norm(std::complex<double>(spectrum[size_t(bin)]) - expected);
            energy += std::norm(expected);
        }
        EXPECT_LT(10 * std::log10(error / energy), -125);
    }
}

// Offsets of 0 to 3 floats from an allocation, in and out of place of FFTW's own alignment.
TEST(RealFFT, GoesThereAndBackAtAnyAlignmentAndLeavesItsSources) {
    const int size = 256;
    RealFFT fft(size);
    for (size_t offset = 0; offset < 4; ++offset) {
        const std::vector<float> x = test::noise(size_t(size) + offset, 5);
        Spectrum spectrum(size_t(fft.bins()) + offset);
        std::vector<float> back(size_t(size) + offset);
        const std::vector<float> before = x;
        fft.forward(x.data() + offset, spectrum.data() + offset);
        const Spectrum transformed = spectrum;
        fft.inverse(spectrum.data() + offset, back.data() + offset);
        EXPECT_EQ(x, before);
        EXPECT_EQ(spectrum, transformed);
        EXPECT_LT(test::errorDb({back.begin() + long(offset), back.end()}, {x.begin() + long(offset), x.end()}), -125);
    }
}

TEST(RealFFT, RefusesSizesThatArentPowersOfTwo) {
    for (const int size : {-4, 0, 1, 2, 3, 12, 1000}) { EXPECT_THROW(RealFFT{size}, std::invalid_argument) << size; }
}

TEST(RealFFT, PlansOnSeveralThreadsAtOnce) {
    std::vector<std::thread> threads;
    std::vector<double> errors(4);
    for (size_t t = 0; t < errors.size(); ++t) {
        threads.emplace_back([&, t] {
            for (int size = 8; size <= 1024; size *= 2) {
                RealFFT fft(size);
                const std::vector<float> x = test::noise(size_t(size), uint32_t(t));
                Spectrum spectrum(size_t(fft.bins()));
                std::vector<float> back(x.size());
                fft.forward(x.data(), spectrum.data());
                fft.inverse(spectrum.data(), back.data());
                errors[t] = std::max(errors[t], test::errorDb(back, x) + 400);
            }
        });
    }
    for (auto& thread : threads) { thread.join(); }
    for (const double error : errors) { EXPECT_LT(error - 400, -125); }
}
