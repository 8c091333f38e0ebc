// The spectrogram against the plain transform, and tones at their place and level.
#include "dsp/spectrogram.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <complex>
#include <numbers>

#include "support/signals.h"

namespace brindlehum {
namespace {

constexpr double pi = std::numbers::pi;

std::vector<float> tone(double hz, double amplitude, double rate, size_t frames) {
    std::vector<float> out(frames);
    for (size_t i = 0; i < frames; ++i) { out[i] = float(amplitude * std::sin(2 * pi * hz * double(i) / rate)); }
    return out;
}

TEST(Spectrogram, EqualsThePlainTransformAlsoOverTheEnds) {
    const auto samples = test::noise(30000, 5);
    const Track track(samples);
    Spectrogram made(8000);
    ASSERT_EQ(made.size(), 256);
    std::vector<float> levels(size_t(made.bins()));
    for (const auto& [from, to, centre] :
         {std::tuple(5000, 5100, 5050), std::tuple(0, 0, 0), std::tuple(29999, 30001, 30000)}) {
        made.levels(track, from, to, levels.data());
        for (int k = 0; k < made.bins(); k += 7) {
            std::complex<double> sum = 0;
            for (int i = 0; i < made.size(); ++i) {
                const int at = centre - made.size() / 2 + i;
                const double x = at >= 0 && at < 30000 ? samples[size_t(at)] : 0;
                sum += x * (0.5 - 0.5 * std::cos(2 * pi * i / (made.size() - 1))) *
                       std::polar(1.0, -2 * pi * k * i / made.size());
            }
            const double plain = 20 * std::log10(std::max(std::abs(sum) * 4 / (made.size() - 1), 1e-6));
            EXPECT_NEAR(levels[size_t(k)], plain, 0.02) << "bin " << k << " at " << centre;
        }
    }
}

TEST(Spectrogram, AToneStandsInItsBinAtItsLevel) {
    const struct {
        double rate, hz, db;
        int64_t from, to;
    } cases[] = {{48000, 1000, 0, 10000, 10064},
                 {48000, 1000, -40, 2000, 30000},
                 {96000, 1000, -6, 20000, 20001},
                 {44100, 10000, -60, 9000, 9500}};
    for (const auto& c : cases) {
        Spectrogram made(c.rate);
        const double bin = std::round(c.hz / made.frequency(1));
        const Track track(tone(made.frequency(bin), std::pow(10, c.db / 20), c.rate, 60000));
        std::vector<float> levels(size_t(made.bins()));
        made.levels(track, c.from, c.to, levels.data());
        const auto loudest = std::ranges::max_element(levels);
        EXPECT_EQ(loudest - levels.begin(), std::ptrdiff_t(bin)) << c.hz << " Hz at " << c.rate;
        EXPECT_NEAR(*loudest, c.db, 0.05);
        EXPECT_NEAR(levels[size_t(bin) + 1], c.db - 6.02, 0.05) << "the window's skirt";
        EXPECT_LE(levels[size_t(bin) + 20], c.db - 60);
    }
}

}  // namespace
}  // namespace brindlehum
