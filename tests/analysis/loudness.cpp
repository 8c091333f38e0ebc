// Loudness: published compliance signals, libebur128, and slow twins of the vectorised kernels.
#include "analysis/loudness/loudness.h"

#include <ebur128.h>
#include <gtest/gtest.h>

#include <cmath>
#include <memory>

#include "analysis/loudness/live_loudness.h"
#include "loudness/loudness_meter.h"
#include "support/signals.h"

namespace brindlehum {
namespace {

using Planes = std::vector<std::vector<float>>;
constexpr double inf = std::numeric_limits<double>::infinity();
using S = SpeakerID;

struct Stretch {
    double seconds;
    double db;
};

// A 1 kHz sine whose level steps, the same in all `channels`.
Planes steppedSine(const std::vector<Stretch>& stretches, double rate, size_t channels) {
    std::vector<float> x;
    for (const auto& [seconds, db] : stretches) {
        const double gain = std::pow(10, db / 20);
        const auto end = x.size() + size_t(std::llround(seconds * rate));
        while (x.size() < end) {
            x.push_back(float(gain * std::sin(2 * std::numbers::pi * 1000 * double(x.size()) / rate)));
        }
    }
    return Planes(channels, x);
}

// EBU Tech 3341, table 1, cases 1 to 5: stereo, in phase.
TEST(Loudness, MeetsTheComplianceCasesForIntegratedLoudness) {
    const std::vector<std::pair<std::vector<Stretch>, double>> cases = {
        {{{20, -23}}, -23},
        {{{20, -33}}, -33},
        {{{10, -36}, {60, -23}, {10, -36}}, -23},
        {{{10, -72}, {10, -36}, {60, -23}, {10, -36}, {10, -72}}, -23},
        {{{20, -26}, {20.1, -20}, {20, -26}}, -23},
    };
    for (const double rate : {48000.0, 44100.0}) {
        for (size_t i = 0; i < cases.size(); ++i) {
            const auto got = Loudness::measure(steppedSine(cases[i].first, rate, 2), rate, SourceFormat::stereo());
            EXPECT_NEAR(got.integrated, cases[i].second, 0.1) << "case " << i + 1 << " at " << rate;
        }
    }
}

// Case 6: 5.0, each channel with its own level.
TEST(Loudness, MeetsTheComplianceCaseForFiveChannels) {
    Planes x;
    for (const double db : {-28.0, -28.0, -24.0, -30.0, -30.0}) { x.push_back(steppedSine({{20, db}}, 48000, 1)[0]); }
    const auto five = SourceFormat::speakers({S::L, S::R, S::C, S::Ls, S::Rs});
    EXPECT_NEAR(Loudness::measure(x, 48000, five).integrated, -23, 0.1);
}

// EBU Tech 3341, cases 15 to 19: sines whose samples miss the peak. Faded, so that no edge rings.
TEST(Loudness, MeetsTheComplianceCasesForTruePeak) {
    struct Case {
        double divisor, amplitude, degrees, dbtp;
    };
    for (const Case& c :
         {Case{4, 0.5, 0, -6}, {4, 0.5, 45, -6}, {6, 0.5, 60, -6}, {8, 0.5, 67.5, -6}, {4, 1.41, 45, 3}}) {
        auto x = test::sine(48000, 48000 / c.divisor, 48000, c.amplitude, c.degrees * std::numbers::pi / 180);
        for (size_t i = 0; i < 4800; ++i) {
            const auto fade = float(0.5 - 0.5 * std::cos(std::numbers::pi * double(i) / 4800));
            x[i] *= fade;
            x[x.size() - 1 - i] *= fade;
        }
        const auto got = Loudness::measure({x, x}, 48000, SourceFormat::stereo());
        EXPECT_LT(got.truePeak, c.dbtp + 0.2) << "fs/" << c.divisor << " at " << c.degrees;
        EXPECT_GT(got.truePeak, c.dbtp - 0.4) << "fs/" << c.divisor << " at " << c.degrees;
    }
}

// BS.1770-4: a 997 Hz sine with peaks at 0 dBFS in one front channel reads -3.01 LKFS.
TEST(Loudness, ReadsTheReferenceSine) {
    for (const double rate : {8000.0, 44100.0, 48000.0, 96000.0, 384000.0}) {
        const std::vector<float> silence(size_t(rate * 3), 0.0F);
        const auto got = Loudness::measure({test::sine(silence.size(), 997, rate), silence}, rate, std::nullopt);
        // The prototypes' numerators fit 48 kHz; the high-pass gains 0.04 dB less at higher rates.
        EXPECT_NEAR(got.integrated, -3.01, rate == 48000 ? 0.01 : 0.05) << rate;
    }
}

TEST(Loudness, KWeightingIsThePublishedTable) {
    const auto [shelf, highPass] = Loudness::kWeighting(48000);
    const std::pair<double, double> published[] = {{shelf.b0, 1.53512485958697},
                                                   {shelf.b1, -2.69169618940638},
                                                   {shelf.b2, 1.19839281085285},
                                                   {shelf.a1, -1.69065929318241},
                                                   {shelf.a2, 0.73248077421585},
                                                   {highPass.b0, 1},
                                                   {highPass.b1, -2},
                                                   {highPass.a1, -1.99004745483398},
                                                   {highPass.a2, 0.99007225036621}};
    for (const auto& [ours, theirs] : published) { EXPECT_NEAR(ours, theirs, 1e-9); }
}

struct Theirs {
    double integrated, momentary = -inf, shortTerm = -inf, truePeak = 0;
};

Theirs libebur128(const Planes& x, double rate) {
    const std::unique_ptr<ebur128_state, void (*)(ebur128_state*)> state(
        ebur128_init(unsigned(x.size()), static_cast<unsigned long>(rate),
                     EBUR128_MODE_I | EBUR128_MODE_M | EBUR128_MODE_S | EBUR128_MODE_TRUE_PEAK),
        [](ebur128_state* s) { ebur128_destroy(&s); });
    Theirs out{};
    const auto block = size_t(0.1 * rate);
    std::vector<float> interleaved(block * x.size());
    double value = 0;
    for (size_t at = 0; at + block <= x[0].size(); at += block) {
        for (size_t i = 0; i < block; ++i) {
            for (size_t c = 0; c < x.size(); ++c) { interleaved[i * x.size() + c] = x[c][at + i]; }
        }
        ebur128_add_frames_float(state.get(), interleaved.data(), block);
        ebur128_loudness_momentary(state.get(), &value);
        out.momentary = std::max(out.momentary, value);
        ebur128_loudness_shortterm(state.get(), &value);
        out.shortTerm = std::max(out.shortTerm, value);
    }
    ebur128_loudness_global(state.get(), &out.integrated);
    for (unsigned c = 0; c < x.size(); ++c) {
        ebur128_true_peak(state.get(), c, &value);
        out.truePeak = std::max(out.truePeak, value);
    }
    out.truePeak = 20 * std::log10(out.truePeak);
    return out;
}

// Noise, tones and pauses of changing level, different in each channel.
Planes programme(double seconds, double rate, size_t channels) {
    Planes out;
    for (size_t c = 0; c < channels; ++c) {
        auto x = test::noise(size_t(seconds * rate), uint32_t(c + 1));
        double smooth = 0;
        for (size_t i = 0; i < x.size(); ++i) {
            const double t = double(i) / rate;
            smooth += 0.2 * (double(x[i]) - smooth);
            const double level =
                t > seconds * 0.6 && t < seconds * 0.7 ? 1e-4 : 0.2 * std::pow(std::sin(t / 3), 2) + 0.02;
            x[i] = float(level * (smooth + std::sin(2 * std::numbers::pi * (110 + 70 * double(c)) * t)));
        }
        out.push_back(std::move(x));
    }
    return out;
}

TEST(Loudness, AgreesWithLibebur128) {
    // Counts of channels for every group of kernel lanes.
    const auto of = [](SpeakerList list) { return SourceFormat::speakers(std::move(list)); };
    for (const auto& [format, rate] : {std::pair(of({S::L}), 48000.0),
                                       {of({S::L, S::R}), 44100},
                                       {of({S::L, S::R}), 96000},
                                       {of({S::L, S::R, S::C, S::LFE, S::Ls, S::Rs}), 48000}}) {
        const Planes x = programme(24, rate, format.asSpeakers()->size());
        const auto got = Loudness::measure(x, rate, format);
        const Theirs want = libebur128(x, rate);
        const auto what = format.displayName() + " at " + std::to_string(int(rate));
        EXPECT_NEAR(got.integrated, want.integrated, 0.05) << what;
        EXPECT_NEAR(got.momentaryMax, want.momentary, 0.1) << what;
        EXPECT_NEAR(got.shortTermMax, want.shortTerm, 0.1) << what;
        EXPECT_NEAR(got.truePeak, want.truePeak, 0.1) << what;
    }
}

// By design a file under 3 s has its own length as the short-term window; libebur128 fills 3 s with silence. For
// 1 s that is 10 log10(3) = 4.77 LU.
TEST(Loudness, ShortFilesDifferFromLibebur128ByDesign) {
    const Planes x = steppedSine({{1, -20}}, 48000, 2);
    const auto got = Loudness::measure(x, 48000, std::nullopt);
    EXPECT_NEAR(got.shortTermMax - libebur128(x, 48000).shortTerm, 4.77, 0.05);
    const auto tiny = Loudness::measure(steppedSine({{0.35, -20}}, 48000, 2), 48000, std::nullopt);
    EXPECT_EQ(tiny.integrated, -70);
    EXPECT_NEAR(tiny.shortTermMax, -20, 0.3);
}

TEST(Loudness, WeighsChannelsBySpeaker) {
    using W = std::vector<double>;
    EXPECT_EQ(Loudness::weights(SourceFormat::speakers(speakers(LayoutID::l51)), 6), (W{1, 1, 1, 0, 1.41, 1.41}));
    // Sides at 90 degrees count, backs at 135 don't, nor do heights above the sides; wides at 60 do.
    EXPECT_EQ(Loudness::weights(SourceFormat::speakers(speakers(LayoutID::l916)), 16),
              (W{1, 1, 1, 0, 1.41, 1.41, 1, 1, 1.41, 1.41, 1, 1, 1, 1, 1, 1}));
    EXPECT_EQ(Loudness::weights(SourceFormat::speakers(speakers(LayoutID::l51)), 4), (W{1, 1, 1, 1})) << "other count";
    EXPECT_EQ(Loudness::weights(SourceFormat::discrete(2), 2), (W{1, 1}));
    EXPECT_EQ(Loudness::weights(std::nullopt, 3), (W{1, 1, 1}));
}

TEST(Loudness, MeasuresAmbisonicsOnW) {
    Planes x = programme(4, 48000, 16);
    const auto w = Loudness::measure({x[0]}, 48000, std::nullopt);
    for (float& sample : x[5]) { sample *= 20; }
    const auto got = Loudness::measure(x, 48000, SourceFormat::ambisonic(3, AmbiNorm::sn3d));
    EXPECT_EQ(got.note, "Ambisonics: measured on W (omni)");
    EXPECT_EQ(got.integrated, w.integrated);
    EXPECT_EQ(got.truePeak, w.truePeak);
}

// The interpolator by its plain definition.
float plainTruePeak(const std::vector<float>& x) {
    double peak = 0;
    for (int p = 0; p < 4; ++p) {
        for (size_t n = 0; n < x.size() + 48; ++n) {
            double sum = 0;
            for (int k = 0; k < 48; ++k) {
                const double at = std::numbers::pi * (p + 4 * k - 95.5) / 4;
                const double turn = 2 * std::numbers::pi * (p + 4 * k) / 191;
                const double tap = std::sin(at) / at * (0.42 - 0.5 * std::cos(turn) + 0.08 * std::cos(2 * turn));
                const auto i = ptrdiff_t(n) + k - 48;
                if (i >= 0 && i < ptrdiff_t(x.size())) { sum += float(tap) * double(x[size_t(i)]); }
            }
            peak = std::max(peak, std::abs(sum));
        }
    }
    return float(peak);
}

TEST(Loudness, TruePeakEqualsThePlainConvolution) {
    for (const size_t count : {1U, 2U, 47U, 48U, 49U, 95U, 96U, 97U, 300U, 1000U}) {
        auto x = test::noise(count, uint32_t(count));
        // Most blocks quiet, so that skipping them is put to the test; the first, middle or last sample may lead.
        for (size_t i = 0; i < count; ++i) { x[i] *= i % 200 < 150 ? 0.3F : 1.0F; }
        for (const size_t loud : {size_t{0}, count / 2, count - 1}) {
            auto y = x;
            y[loud] = 1.2F;
            const float want = plainTruePeak(y);
            EXPECT_NEAR(Loudness::truePeak(y) / want, 1, 2e-6) << count << ", loudest at " << loud;
            EXPECT_NEAR(Loudness::truePeakAbove(y, 0, Loudness::plainKernels()) / want, 1, 2e-6) << count;
        }
    }
    EXPECT_EQ(Loudness::truePeak({}), 0);
}

// Seven channels, so that all widths of kernels meet, and blocks that end within those of the measure and of the peak.
TEST(Loudness, MeasuresTheSameInBlocksOfAnyLength) {
    const Planes x = programme(4.3, 8000, 7);
    const LoudnessResult whole = Loudness::measure(x, 8000, std::nullopt);
    for (const size_t length : {1U, 47U, 799U, 800U, 16385U}) {
        Loudness::LoudnessMeter meter(8000, std::nullopt, 7);
        for (size_t at = 0; at < x[0].size(); at += length) {
            const float* planes[7];
            for (size_t c = 0; c < 7; ++c) { planes[c] = x[c].data() + at; }
            meter.push(planes, int(std::min<size_t>(length, x[0].size() - at)));
        }
        const LoudnessResult got = meter.finish();
        EXPECT_NEAR(got.integrated, whole.integrated, 1e-9) << length;
        EXPECT_NEAR(got.momentaryMax, whole.momentaryMax, 1e-9) << length;
        EXPECT_NEAR(got.shortTermMax, whole.shortTermMax, 1e-9) << length;
        EXPECT_EQ(got.samplePeak, whole.samplePeak) << length;
        EXPECT_EQ(got.truePeak, whole.truePeak) << length;
    }
}

TEST(Loudness, KernelVersionsAgreeWithThePlainFilter) {
    const auto [shelf, highPass] = Loudness::kWeighting(48000);
    const Planes x = programme(0.3, 48000, 4);
    std::vector<double> want;
    for (const auto& plane : x) {
        std::vector<float> y = plane;
        for (const Loudness::Biquad& f : {shelf, highPass}) {
            double x1 = 0, x2 = 0, y1 = 0, y2 = 0;
            for (float& v : y) {
                const double in = v;
                const double out = f.b0 * in + f.b1 * x1 + f.b2 * x2 - f.a1 * y1 - f.a2 * y2;
                x2 = x1, x1 = in, y2 = y1, y1 = out;
                v = float(out);
            }
        }
        double sum = 0;
        for (const float v : y) { sum += double(v) * double(v); }
        want.push_back(sum);
    }
    for (const auto* kernels : {&Loudness::plainKernels(), &Loudness::fastestKernels()}) {
        for (const auto& [run, lanes] : {std::pair{kernels->one, 1}, {kernels->two, 2}, {kernels->four, 4}}) {
            const float* planes[4] = {x[0].data(), x[1].data(), x[2].data(), x[3].data()};
            Loudness::KState state;
            double sums[4] = {};
            // In uneven pieces: the memory carries over.
            run(planes, 0, 1, shelf, highPass, state, sums);
            run(planes, 1, 7001, shelf, highPass, state, sums);
            run(planes, 7002, int64_t(x[0].size()) - 7002, shelf, highPass, state, sums);
            for (int c = 0; c < lanes; ++c) {
                EXPECT_NEAR(sums[c] / want[size_t(c)], 1, 1e-9) << lanes << " lanes, " << c;
            }
        }
        for (const int64_t count : {0, 1, 7, 8, 9, 100}) {
            float most = 0;
            for (int64_t i = 0; i < count; ++i) { most = std::max(most, std::abs(x[1][size_t(i)])); }
            EXPECT_EQ(kernels->largest(x[1].data(), count), most) << count;
        }
    }
}

// The running meter says at the end what the measurement of the whole says, whatever the blocks.
TEST(LiveLoudness, AgreesWithTheMeasurementOfTheWhole) {
    const SpeakerList bed = {S::L, S::R, S::C, S::LFE, S::Ls, S::Rs};
    const std::vector<Stretch> levels = {{6, -40}, {5, -20.3}, {4, -31.7}, {7, -18.9}, {3, -25}};
    for (const double rate : {44100.0, 48000.0, 96000.0}) {
        const Planes x = steppedSine(levels, rate, bed.size());
        const auto whole = Loudness::measure(x, rate, SourceFormat::speakers(bed));
        for (const size_t block : {1000, 4096, 30011}) {
            LiveLoudness live;
            live.open(rate, bed);
            double loudest = LoudnessResult::floor;
            for (size_t at = 0; at < x[0].size(); at += block) {
                std::vector<const float*> planes;
                for (const auto& plane : x) { planes.push_back(plane.data() + at); }
                live.push(planes.data(), int(std::min(block, x[0].size() - at)));
                loudest = std::max(loudest, live.reading().shortTerm);
            }
            EXPECT_NEAR(live.reading().integrated, whole.integrated, 0.01) << rate << " " << block;
            EXPECT_LE(loudest, whole.shortTermMax + 1e-9) << rate << " " << block;
            EXPECT_GT(loudest, whole.shortTermMax - 0.6) << rate << " " << block;
        }
    }
}

}  // namespace
}  // namespace brindlehum
