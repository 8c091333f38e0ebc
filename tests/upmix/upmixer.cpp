// Upmixer: what comes out of plan and processor together, on noise and tones, over rooms, presets and changes.
#include <gtest/gtest.h>

#include <algorithm>
#include <complex>
#include <random>

#include "core/mn_fft.h"
#include "spatial/layout_matrix.h"
#include "support/signals.h"
#include "upmix/upmixer.h"

namespace brindlehum {
namespace {

using enum SpeakerID;
using Planes = std::vector<std::vector<float>>;

constexpr size_t frames = 24000;

Planes noises(size_t count, uint32_t seed) {
    Planes planes;
    for (size_t c = 0; c < count; ++c) { planes.push_back(test::noise(frames, seed + uint32_t(c))); }
    return planes;
}

// Common and own noise.
Planes music(size_t count, uint32_t seed) {
    Planes planes = noises(count, seed);
    const auto common = test::noise(frames, seed + 100);
    for (size_t c = 0; c < count; ++c) {
        for (size_t i = 0; i < frames; ++i) { planes[c][i] = 0.3F * planes[c][i] + 0.5F * common[i]; }
    }
    return planes;
}

// The outputs without the latency.
Planes upmixed(Upmixer& upmixer, Planes in) {
    const auto latency = size_t(mn_upmix_latency(upmixer.raw()));
    for (auto& plane : in) { plane.resize(frames + latency); }
    Planes out(size_t(upmixer.outChannels()), std::vector<float>(frames + latency));
    std::vector<const float*> from;
    std::vector<float*> to;
    for (const auto& plane : in) { from.push_back(plane.data()); }
    for (auto& plane : out) { to.push_back(plane.data()); }
    mn_upmix_process(upmixer.raw(), from.data(), int(frames + latency), to.data());
    for (auto& plane : out) { plane.erase(plane.begin(), plane.begin() + long(latency)); }
    return out;
}

std::unique_ptr<Upmixer> upmixerFor(const UpmixRequest& request, double rate = 48000) {
    auto upmixer = Upmixer::make(int(request.source.size()), int(request.target.size()), rate);
    upmixer->apply(request);
    mn_upmix_reset(upmixer->raw());
    return upmixer;
}

double powerOf(const Planes& planes, size_t from = 0) {
    double sum = 0;
    for (const auto& plane : planes) {
        for (size_t i = from; i < plane.size(); ++i) { sum += double(plane[i]) * double(plane[i]); }
    }
    return sum;
}

double ratioDb(double a, double b) {
    return a > 0 ? 10 * std::log10(a / b) : -400;
}

const std::pair<LayoutID, LayoutID> within[] = {
    {LayoutID::l51, LayoutID::l71},     {LayoutID::l51, LayoutID::l514},    {LayoutID::l71, LayoutID::l712},
    {LayoutID::l71, LayoutID::l714},    {LayoutID::l712, LayoutID::l916},   {LayoutID::l714, LayoutID::l916},
    {LayoutID::stereo, LayoutID::l51},  {LayoutID::stereo, LayoutID::l71},  {LayoutID::stereo, LayoutID::l514},
    {LayoutID::stereo, LayoutID::l712}, {LayoutID::stereo, LayoutID::l714}, {LayoutID::stereo, LayoutID::l916}};

TEST(Upmixer, AtStrengthZeroTheSourceComesThroughAndNothingElse) {
    for (const double rate : {44100.0, 96000.0, 192000.0}) {
        for (const auto& [from, to] : within) {
            SCOPED_TRACE(testing::Message() << rawValue(from) << " to " << rawValue(to) << " at " << rate);
            UpmixParams p = params(UpmixPreset::hall);
            p.strength = 0;
            const SpeakerList& source = speakers(from);
            const SpeakerList& room = speakers(to);
            for (const Planes& in : {noises(source.size(), 1), music(source.size(), 2)}) {
                const Planes out = upmixed(*upmixerFor({source, room, p}, rate), in);
                for (size_t i = 0; i < room.size(); ++i) {
                    const auto channel = size_t(std::ranges::find(source, room[i]) - source.begin());
                    if (channel == source.size()) {
                        ASSERT_EQ(out[i], std::vector<float>(frames)) << rawValue(room[i]);
                    } else {
                        ASSERT_LT(test::errorDb(out[i], in[channel]), -120) << rawValue(room[i]);
                    }
                }
            }
        }
    }
}

TEST(Upmixer, AnExactUpmixFoldsBackToItsSource) {
    constexpr unsigned seed = 20261125;
    std::mt19937 random(seed);
    const auto between = [&](double low, double high) { return std::uniform_real_distribution(low, high)(random); };
    for (const auto& [from, to] : within) {
        const UpmixParams p{.strength = between(0, 1),
                            .centerWidth = between(0, 1),
                            .stage = between(30, 60),
                            .frontAmbience = between(0, 1),
                            .ambienceDB = between(-12, 9),
                            .sideDB = between(-50, 6),
                            .rearDB = between(-12, 6),
                            .wideDB = between(-12, 6),
                            .heightDB = between(-40, 6),
                            .surroundDelayMs = 10,
                            .shelfHz = 4000,
                            .shelfDB = -6,
                            .focus = between(0.3, 3),
                            .lfe = UpmixParams::LFEMode::split,
                            .exact = true};
        const SpeakerList& source = speakers(from);
        const SpeakerList& room = speakers(to);
        const Planes in = music(source.size(), random());
        const Planes out = upmixed(*upmixerFor({source, room, p}), in);
        const Matrix fold = MixBuilder::layoutMatrix(SourceFormat::speakers(room), int(room.size()), source,
                                                     ListenMode::normal, {}, true);
        for (size_t c = 0; c < source.size(); ++c) {
            std::vector<float> folded(frames);
            for (size_t i = 0; i < room.size(); ++i) {
                for (size_t n = 0; n < frames; ++n) { folded[n] += float(fold[c][i]) * out[i][n]; }
            }
            EXPECT_LT(test::errorDb(folded, in[c]), -120)
                << rawValue(from) << " to " << rawValue(to) << " " << rawValue(source[c]) << ", seed " << seed;
        }
    }
}

TEST(Upmixer, ACoherentSourceKeepsItsPowerAndItsSide) {
    const SpeakerList& room = speakers(LayoutID::l714);
    const auto sound = test::noise(frames, 3);
    for (const UpmixPreset preset : allUpmixPresets) {
        UpmixParams p = params(preset);
        p.lfe = UpmixParams::LFEMode::off;
        if (p.exact) { continue; }
        const auto upmixer = upmixerFor({{L, R}, room, p});
        for (const double pan : {0.0, 0.2, 0.4, 0.5, 0.77, 1.0}) {
            Planes in(2, sound);
            for (float& x : in[0]) { x *= float(std::cos(pan * std::numbers::pi / 2)); }
            for (float& x : in[1]) { x *= float(std::sin(pan * std::numbers::pi / 2)); }
            if (pan == 0) { std::ranges::fill(in[1], 0.0F); }
            mn_upmix_reset(upmixer->raw());
            const Planes out = upmixed(*upmixer, in);
            EXPECT_NEAR(ratioDb(powerOf(out, 4096), powerOf(in, 4096)), 0, 0.05) << rawValue(preset) << " at " << pan;
            Planes right;
            for (const SpeakerID speaker : {R, Rs, Rrs, Rtf, Rtr}) {
                right.push_back(out[size_t(std::ranges::find(room, speaker) - room.begin())]);
            }
            if (pan == 0) { EXPECT_LT(ratioDb(powerOf(right), powerOf(in)), -100) << rawValue(preset); }
        }
    }
}

// Power of the direct part and of all, over all outputs, in the hops after the first 20.
std::pair<double, double> measuredPowers(const Planes& in, const UpmixParams& p, LayoutID room = LayoutID::l714) {
    const auto upmixer = upmixerFor({{L, R}, speakers(room), p});
    mn_upmix_measure(upmixer->raw(), 1);
    double direct = 0;
    double all = 0;
    for (size_t from = 0; from + 1536 <= frames; from += 1536) {
        const float* const planes[] = {in[0].data() + from, in[1].data() + from};
        mn_upmix_process(upmixer->raw(), planes, 1536, nullptr);
        for (int i = 0; i < upmixer->outChannels(); ++i) {
            const auto d = double(mn_upmix_take_direct(upmixer->raw(), i));
            const auto a = double(mn_upmix_take_ambience(upmixer->raw(), i));
            if (from < 20 * 256) { continue; }
            direct += d * d;
            all += d * d + a * a;
        }
    }
    return {direct, all};
}

TEST(Upmixer, TheSplitKnowsDirectSoundFromDiffuseAndAntiphaseSound) {
    const Planes diffuse = noises(2, 9);
    const Planes centre(2, diffuse[0]);
    Planes opposite = centre;
    for (float& x : opposite[1]) { x = -x; }
    for (const UpmixPreset preset : allUpmixPresets) {
        UpmixParams p = params(preset);
        p.lfe = UpmixParams::LFEMode::off;
        const auto [noDirect, all] = measuredPowers(opposite, p);
        EXPECT_EQ(noDirect, 0) << rawValue(preset);
        EXPECT_GT(all, 0);
        const auto [direct, both] = measuredPowers(centre, p);
        EXPECT_LT(ratioDb(both - direct, both), -100) << rawValue(preset);
        // A greater focus takes more for direct, as it should: of a bin's share s at focus 1 it makes 2 s / (1 + s).
        const auto [little, whole] = measuredPowers(diffuse, p);
        EXPECT_LT(ratioDb(little, whole), p.focus > 1 ? -24 : -25) << rawValue(preset);
    }
}

// The power of a tone in a plane's last 8000 samples, a whole number of its periods.
double tonePower(const std::vector<float>& plane, double hz) {
    std::complex<double> sum = 0;
    for (size_t i = plane.size() - 8000; i < plane.size(); ++i) {
        sum += double(plane[i]) * std::polar(1.0, 2 * std::numbers::pi * hz * double(i) / 48000);
    }
    return std::norm(sum / 4000.0) / 2;
}

TEST(Upmixer, TonesThatPlayAtOnceStayOnTheirSides) {
    const SpeakerList& room = speakers(LayoutID::l51);
    UpmixParams p = params(UpmixPreset::film);
    p.lfe = UpmixParams::LFEMode::off;
    const Planes in = {test::sine(frames, 1000, 48000, 0.5), test::sine(frames, 3000, 48000, 0.5)};
    const Planes out = upmixed(*upmixerFor({{L, R}, room, p}), in);
    double leaks = 0;
    for (size_t i = 0; i < room.size(); ++i) {
        if (room[i] != L) { leaks += tonePower(out[i], 1000); }
        if (room[i] != R) { leaks += tonePower(out[i], 3000); }
    }
    EXPECT_LT(ratioDb(leaks, 0.125 * 2), -55);
    EXPECT_NEAR(ratioDb(tonePower(out[0], 1000), 0.125), 0, 0.05);
}

// From 300 Hz to 2 kHz, where no high-pass or bass send reaches.
double bandPower(const Planes& planes) {
    constexpr int size = 16384;
    alignas(64) static float time[size];
    alignas(64) static float spectrum[size + 2];
    const std::unique_ptr<mn_fft, decltype(&mn_fft_destroy)> fft(mn_fft_create(size), mn_fft_destroy);
    double sum = 0;
    for (const auto& plane : planes) {
        std::copy_n(plane.end() - size, size, time);
        mn_fft_forward(fft.get(), time, spectrum);
        for (int k = 300 * size / 48000; k < 2000 * size / 48000; ++k) {
            sum += std::norm(std::complex<double>(spectrum[2 * k], spectrum[2 * k + 1]));
        }
    }
    return sum;
}

TEST(Upmixer, DiffuseSoundGetsThePowerThatThePresetAsksFor) {
    const Planes in = noises(2, 9);
    for (const UpmixPreset preset : allUpmixPresets) {
        UpmixParams p = params(preset);
        p.shelfDB = 0;
        if (p.exact) { continue; }
        const double expected = p.frontAmbience + std::pow(10, p.ambienceDB / 10) * (1 - p.frontAmbience);
        const Planes out = upmixed(*upmixerFor({{L, R}, speakers(LayoutID::l916), p}), in);
        EXPECT_NEAR(ratioDb(bandPower(out), bandPower(in)), 10 * std::log10(expected), 0.3) << rawValue(preset);
    }
}

TEST(Upmixer, ChangesOfThePlanDontClick) {
    const SpeakerList& room = speakers(LayoutID::l714);
    const auto tone = test::sine(frames, 441, 48000, 0.5);
    Planes in(2, tone);
    for (float& x : in[1]) { x *= 0.3F; }
    const double own = test::maxJump(tone) * std::hypot(1, 0.3);
    std::mt19937 random(4);
    const auto upmixer = upmixerFor({{L, R}, room, {}});
    Planes out(room.size());
    for (size_t done = 0; done < frames; done += 1000) {
        UpmixParams p = params(allUpmixPresets[random() % allUpmixPresets.size()]);
        p.strength = double(random() % 11) / 10;
        p.surroundDelayMs = double(random() % 21);
        p.stage = 30 + 5 * double(random() % 7);
        p.ambienceDB = 0;
        const auto old = upmixer->apply({{L, R}, room, p});
        std::vector<float> block(room.size() * 1000);
        std::vector<float*> to;
        for (size_t i = 0; i < room.size(); ++i) { to.push_back(block.data() + 1000 * i); }
        const float* const from[] = {in[0].data() + done, in[1].data() + done};
        mn_upmix_process(upmixer->raw(), from, 1000, to.data());
        for (size_t i = 0; i < room.size(); ++i) { out[i].insert(out[i].end(), to[i], to[i] + 1000); }
    }
    for (size_t i = 0; i < room.size(); ++i) {
        EXPECT_LT(test::maxJump({out[i].begin() + 2048, out[i].end()}), 1.1 * own) << rawValue(room[i]);
    }
}

TEST(Upmixer, TheSamePlanStaysAndTheOldOneIsHandedBack) {
    const UpmixRequest request{{L, R}, speakers(LayoutID::l51), params(UpmixPreset::film)};
    const auto upmixer = Upmixer::make(2, 6, 48000);
    EXPECT_EQ(upmixer->apply(request), nullptr);
    EXPECT_EQ(upmixer->apply(request), nullptr);
    UpmixRequest other = request;
    other.params.strength = 0.5;
    EXPECT_NE(upmixer->apply(other), nullptr);
    EXPECT_EQ(upmixer->request(), other);
    // Latency, a window behind it, and the longest delay: right tops have none in 5.1.
    EXPECT_EQ(mn_upmix_tail(upmixer->raw()), 2 * 1024 + int(std::lround(48 * (10 + 12 * 0.55))));
    EXPECT_EQ(Upmixer::make(17, 2, 48000), nullptr);
    EXPECT_EQ(Upmixer::make(2, 2, 88200)->fftSize(), 2048);
}

}  // namespace
}  // namespace brindlehum
