// SpectralFrames: folding, and the key that follows.
#include "analysis/spectrum/spectral_frames.h"

#include <gtest/gtest.h>

#include <complex>

#include "analysis/key/key_analyzer.h"
#include "key/peak_key.h"
#include "support/music.h"
#include "support/signals.h"

namespace brindlehum {
namespace {

TEST(SpectralFrames, EqualsThePlainTransformFolded) {
    const auto x = test::noise(4097, 11);
    const SpectralFrames made(x);
    std::array<double, 12> chroma{};
    std::array<double, 7> bands{};
    for (int k = 1; k < 2048; ++k) {
        std::complex<double> sum;
        const auto turn = std::polar(1.0, -2 * std::numbers::pi * k / 4096);
        std::complex<double> phase = 1;
        for (size_t i = 0; i < 4096; ++i, phase *= turn) {
            sum += double(x[i]) * std::pow(std::sin(std::numbers::pi * double(i) / 4095), 2) * phase;
        }
        const double hz = k * 5.38330078125;
        if (hz >= 65 && hz <= 4000) {
            chroma[size_t(std::lround(12 * std::log2(hz / 440) + 69) % 12)] += std::abs(sum);
        }
        static constexpr double tops[] = {60, 250, 500, 2000, 4000, 6000, 11025};
        if (hz >= 20) { bands[size_t(std::lower_bound(tops, tops + 7, hz) - tops)] += std::abs(sum); }
    }
    for (size_t i = 0; i < 12; ++i) { EXPECT_NEAR(made.chroma[0][i] / chroma[i], 1, 1e-5) << "class " << i; }
    for (size_t i = 0; i < 7; ++i) { EXPECT_NEAR(made.bands[0][i] / bands[i], 1, 1e-5) << "band " << i; }
    EXPECT_EQ(made.rms[0], Signal::rms(x, 0, 4096));
}

// I IV V I and i iv V i in all keys; the chords fade in and out, so no click colours them.
TEST(KeyAnalyzer, NamesTheKeyOfACadence) {
    static constexpr const char* names[] = {"C", "C#", "D", "D#", "E", "F", "F#", "G", "G#", "A", "A#", "B"};
    for (int tonic = 0; tonic < 12; ++tonic) {
        for (const bool minor : {false, true}) {
            const int third = minor ? 3 : 4;
            std::vector<float> x(size_t(test::musicRate * 5), 0.0F);
            const int base = 48 + tonic;
            const std::vector<std::vector<int>> chords = {{base, base + third, base + 7, base + 12},
                                                          {base + 5, base + 5 + third, base + 12},
                                                          {base + 7, base + 11, base + 14},
                                                          {base, base + third, base + 7, base + 12},
                                                          {base, base + third, base + 7, base + 12}};
            for (size_t i = 0; i < chords.size(); ++i) { test::addChord(x, double(i), double(i) + 1, chords[i], 0.1); }
            const KeyResult key = KeyAnalyzer::analyze(SpectralFrames(x), 120, 0.5);
            EXPECT_EQ(key.tonic, names[tonic]) << (minor ? "minor" : "major");
            EXPECT_EQ(key.mode, minor ? "minor" : "major") << names[tonic];
            EXPECT_GT(key.confidence, 0.1) << names[tonic] << key.mode;
        }
    }
}

// Sinusoids of a triad, tuned off by cents: the peaks say by how much, and keep their key.
TEST(KeyAnalyzer, FollowsTheTuning) {
    for (const int cents : {-40, -10, 0, 30, 45}) {
        std::vector<float> x(size_t(test::musicRate * 8), 0.0F);
        for (const int note : {59, 62, 66, 71, 78}) {
            test::addTone(x, 0, 440 * std::exp2((note + cents / 100.0 - 69) / 12), 0.1, 10, 0.1);
        }
        const SpectralFrames frames(x);
        EXPECT_NEAR(tuningOf(frames.pitches), cents / 10.0, 0.5) << cents;
        const KeyResult key = KeyAnalyzer::analyze(frames, 120, 0.5);
        EXPECT_EQ(key.tonic + " " + key.mode, "B minor") << cents;
    }
}

SpectralFrames framesOf(const SpectralFrames::Chroma& chroma, const SpectralFrames::Bands& bands) {
    SpectralFrames frames;
    frames.chroma = {chroma};
    frames.bands = {bands};
    frames.rms = {0.1F};
    return frames;
}

using Words = std::vector<std::string>;

TEST(KeyAnalyzer, DescribesBalanceAndMood) {
    const SpectralFrames::Chroma major = {6.35F, 2.23F, 3.48F, 2.33F, 4.38F, 4.09F,
                                          2.52F, 5.19F, 2.39F, 3.66F, 2.29F, 2.88F};
    const SpectralFrames::Chroma minor = {6.33F, 2.68F, 3.52F, 5.38F, 2.60F, 3.53F,
                                          2.54F, 4.75F, 3.98F, 2.69F, 3.34F, 3.17F};
    struct Case {
        SpectralFrames::Chroma chroma;
        SpectralFrames::Bands bands;
        double bpm, sure;
        const char *spectral, *mood;
    };
    const auto joined = [](const Words& words) {
        std::string out;
        for (const auto& word : words) { out += (out.empty() ? "" : " ") + word; }
        return out;
    };
    const Case cases[] = {
        {minor, {15, 40, 10, 20, 9, 3, 3}, 75, 0.3, "bass-heavy sub-rich dark", "contemplative brooding foreboding"},
        {major, {0, 10, 5, 20, 25, 20, 20}, 130, 0.3, "bright thin", "energetic bright"},
        {major, {0, 20, 12, 20, 20, 14, 14}, 100, 0.3, "", "uplifting bright"},  // between the limits of bright
        {major, {0, 20, 10, 40, 20, 5, 5}, 99.9, 0.3, "mid-forward", "warm"},
        {minor, {0, 20, 10, 40, 20, 5, 5}, 140, 0.2, "mid-forward", ""},  // no word at a doubtful tempo
        {minor, {0, 20, 20, 30, 10, 10, 10}, 74.9, 0.21, "", "somber"},
        {minor, {0, 20, 20, 30, 10, 10, 10}, 0, 0.9, "", ""},
    };
    for (const Case& c : cases) {
        const KeyResult key = KeyAnalyzer::analyze(framesOf(c.chroma, c.bands), c.bpm, c.sure);
        EXPECT_EQ(joined(key.spectralTags), c.spectral) << c.bpm;
        EXPECT_EQ(joined(key.moodTags), c.mood) << c.bpm;
    }
}

}  // namespace
}  // namespace brindlehum
