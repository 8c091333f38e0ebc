// RealFFT: scale, any alignment and untouched sources, which it adds to the core's transform.
#include <gtest/gtest.h>

#include <stdexcept>

#include "dsp/real_fft.h"
#include "support/signals.h"

using brindlehum::RealFFT;
namespace test = brindlehum::test;

// Offsets of 0 to 3 floats from an allocation, on FFTW's own alignment and off it.
TEST(RealFFT, ComesBackFromAnyAlignmentAndLeavesItsSources) {
    const int size = 256;
    RealFFT fft(size);
    for (size_t offset = 0; offset < 4; ++offset) {
        const std::vector<float> x = test::noise(size_t(size) + offset, 5);
        std::vector<std::complex<float>> spectrum(size_t(fft.bins()) + offset);
        std::vector<float> back(size_t(size) + offset);
        const std::vector<float> before = x;
        fft.forward(x.data() + offset, spectrum.data() + offset);
        const auto transformed = spectrum;
        fft.inverse(spectrum.data() + offset, back.data() + offset);
        EXPECT_EQ(x, before);
        EXPECT_EQ(spectrum, transformed);
        EXPECT_LT(test::errorDb({back.begin() + long(offset), back.end()}, {x.begin() + long(offset), x.end()}), -125);
    }
    EXPECT_THROW(RealFFT{1000}, std::invalid_argument);
}
