// The upmix processor: against a twin in doubles, bit for bit over block lengths and processors, and on bad input.
#include <gtest/gtest.h>

#include <limits>
#include <memory>

#include "core/mn_upmix.h"
#include "support/signals.h"
#include "upmix_kernels.h"
#include "upmix_twin.h"

namespace test = brindlehum::test;
using namespace brindlehum::core;

namespace {

constexpr int size = 256;
constexpr int bins = size / 2 + 1;
constexpr int ins = 4;
constexpr int outs = 6;
constexpr int steps = 9;
constexpr int frames = 60 * size;

using Planes = std::vector<std::vector<float>>;
using Processor = std::unique_ptr<mn_upmix, decltype(&mn_upmix_destroy)>;

Processor processor() {
    return {mn_upmix_create(ins, outs, size, 48000), mn_upmix_destroy};
}

// Every list of a plan, with gains at random; two pairs and a route.
struct RandomPlan {
    explicit RandomPlan(uint32_t seed) : numbers(test::noise(8192, seed)) {
        auto* at = numbers.data();
        const auto next = [&at](int count) { return std::exchange(at, at + count); };
        plan.pairs = 2;
        plan.pair_in = pairs.data();
        plan.pan_steps = steps;
        plan.kappa = kappa.data();
        plan.own_l = ownL.data();
        plan.own_r = ownR.data();
        plan.home = home.data();
        plan.routes = 1;
        plan.route_in = routeIn.data();
        plan.route_out = routeOut.data();
        plan.route_gain = routeGain.data();
        plan.lfe_out = 3;
        plan.lfe_gain = 0.5F;
        plan.delay = delay.data();
        plan.direct = next(2 * outs * steps);
        plan.amb_l = next(2 * outs);
        plan.amb_r = next(2 * outs);
        plan.curve = next(outs * bins);
        float* const re = next(outs * bins);
        float* const im = next(outs * bins);
        plan.decor_re = re;
        plan.decor_im = im;
        for (int i = 0; i < outs * bins; ++i) {
            const float angle = re[i] * 3;
            re[i] = i % bins == 0 || i % bins == bins - 1 ? 1 : std::cos(angle);
            im[i] = i % bins == 0 || i % bins == bins - 1 ? 0 : std::sin(angle);
        }
        plan.fold_l = next(2 * outs);
        plan.fold_r = next(2 * outs);
        plan.lfe_lp = next(bins);
        plan.main_hp = next(bins);
    }
    std::vector<float> numbers;
    std::vector<int32_t> pairs{0, 1, 3, 2}, ownL{0, 2}, ownR{1, 4}, home{0, 1}, routeIn{2}, routeOut{5};
    std::vector<float> kappa{0.7F, 2}, routeGain{0.4F}, delay{0, 0, 17.4F, 300, 0, 1};
    mn_upmix_plan plan{};
};

// Common and own noise in changing shares, so that pan and correlation differ from bin to bin and hop to hop.
Planes music(uint32_t seed, size_t count = frames) {
    const auto common = test::noise(count, seed);
    const auto other = test::sine(count, 1234, 48000, 0.7);
    Planes planes;
    for (uint32_t c = 0; c < ins; ++c) {
        auto own = test::noise(count, seed + 1 + c);
        for (size_t i = 0; i < own.size(); ++i) {
            const auto share = float(0.5 + 0.5 * std::sin(double(i) / 700 + c));
            own[i] = 0.3F * (share * common[i] + (1 - share) * own[i]) + (c % 2 == 0 ? 0.5F : 0.1F) * other[i];
        }
        planes.push_back(own);
    }
    return planes;
}

// Runs in blocks of these lengths, in turn.
Planes run(mn_upmix* upmix, const Planes& in, const std::vector<int>& blocks) {
    Planes out(outs, std::vector<float>(in[0].size()));
    for (size_t done = 0, turn = 0; done < in[0].size(); ++turn) {
        const auto count = std::min(size_t(blocks[turn % blocks.size()]), in[0].size() - done);
        std::vector<const float*> from;
        std::vector<float*> to;
        for (const auto& plane : in) { from.push_back(plane.data() + done); }
        for (auto& plane : out) { to.push_back(plane.data() + done); }
        mn_upmix_process(upmix, from.data(), int(count), to.data());
        done += count;
    }
    return out;
}

}  // namespace

TEST(Upmix, EqualsATwinInDoublesInEveryBlockLength) {
    for (const bool exact : {false, true}) {
        RandomPlan random(exact ? 11 : 12);
        random.plan.exact = exact ? 1 : 0;
        const Planes in = music(5, 12 * size);
        const auto expected = test::UpmixTwin(ins, outs, size, 48000).process(random.plan, in);
        Planes first;
        for (const std::vector<int>& blocks : {std::vector{1}, {13, 1, 64, 1000}, {64}, {4096}}) {
            const Processor upmix = processor();
            mn_upmix_set_plan(upmix.get(), &random.plan);
            mn_upmix_reset(upmix.get());  // takes up the delays at once
            const Planes out = run(upmix.get(), in, blocks);
            if (first.empty()) { first = out; }
            EXPECT_EQ(out, first) << "blocks of " << blocks[0];
        }
        for (size_t o = 0; o < outs; ++o) {
            EXPECT_LT(test::errorDb(first[o], std::vector<float>(expected[o].begin(), expected[o].end())), -100)
                << "output " << o << (exact ? ", exact" : "");
        }
    }
}

TEST(Upmix, TheLoopsReturnTheSameBitsOnEveryProcessor) {
    const UpmixKernels* fast = avx2UpmixKernels();
    if (fast == nullptr) { GTEST_SKIP() << "this processor has no AVX2"; }
    const UpmixKernels& plain = plainUpmixKernels();
    const auto results = [](const UpmixKernels& kernels, bool fresh) {
        alignas(64) static float lists[24][size + 16];
        alignas(64) static int32_t step[size];
        const auto numbers = test::noise(sizeof(lists) / sizeof(float), 77);
        std::ranges::copy(numbers, &lists[0][0]);
        const auto spectrum = [](int at) { return Spectrum{lists[at], lists[at + 1]}; };
        const auto read = [](int at) { return ConstSpectrum{lists[at], lists[at + 1]}; };
        const PairPowers powers{lists[4], lists[5], lists[6]};
        for (int i = 0; i < 2; ++i) {
            std::ranges::transform(lists[4 + i], lists[4 + i], [](float x) { return std::abs(x); });
        }
        kernels.average(read(0), read(2), 0.7F, powers, bins);
        std::ranges::fill(lists[7], 0.4F);
        const Split split{lists[8], lists[9], step, lists[10], lists[11], spectrum(12), spectrum(14), spectrum(16)};
        kernels.split(read(0), read(2), powers, lists[7], 1.5F, 65, split, bins);
        kernels.spread(split, {lists[18], nullptr, 0.4F, 0.6F, lists[19], read(2)}, spectrum(20), bins, fresh);
        kernels.join(read(20), read(14), {lists[22], lists[23]}, size);
        kernels.overlap(lists[22], lists[23], lists[0], size, size / 4);
        kernels.add(read(12), 0.3F, spectrum(14), bins, fresh);
        kernels.scale(spectrum(16), lists[9], bins);
        return std::vector<float>(&lists[0][0], &lists[0][0] + numbers.size());
    };
    for (const bool fresh : {false, true}) { EXPECT_EQ(results(plain, fresh), results(*fast, fresh)); }
}

// Measuring reads what the sound is made of, and leaves it alone.
TEST(Upmix, MeasuredLevelsAreThoseOfTheOutputs) {
    for (const bool exact : {false, true}) {
        RandomPlan random(exact ? 11 : 12);
        mn_upmix_plan plan = random.plan;
        plan.exact = exact ? 1 : 0;
        plan.pairs = 1;
        plan.main_hp = plan.lfe_lp = plan.decor_re = plan.decor_im = nullptr;
        // Gains that change from bin to bin would lose some of the power in the overlap.
        const std::vector<float> half(outs * bins, 0.5F);
        plan.curve = half.data();
        // The route has an output of its own: the powers of two that are alike don't simply add up.
        std::vector<float> pans(plan.direct, plan.direct + 2 * outs * steps);
        std::fill_n(pans.begin() + 5 * steps, steps, 0.0F);
        plan.direct = pans.data();
        std::vector<float> nothing(2 * outs, 0.0F);
        std::vector<float> noPans(2 * outs * steps, 0.0F);
        for (const bool direct : {true, false}) {
            // In an exact plan the owners still get the other part: only the others are looked at.
            mn_upmix_plan part = plan;
            random.home = {0, 0};
            if (direct) {
                part.amb_l = part.amb_r = nothing.data();
            } else {
                part.direct = noPans.data();
                part.routes = 0;
            }
            const Planes in = music(5, 400 * size);
            const Processor plain = processor();
            mn_upmix_set_plan(plain.get(), &part);
            const Planes expected = run(plain.get(), in, {64});
            const Processor upmix = processor();
            mn_upmix_set_plan(upmix.get(), &part);
            mn_upmix_measure(upmix.get(), 1);
            std::vector<double> powers(outs, 0.0);
            Planes heard(outs);
            int taken = 0;
            for (size_t from = 0; from < in[0].size(); from += 6 * size / 4, ++taken) {
                Planes piece;
                const size_t end = std::min(from + 6 * size / 4, in[0].size());
                for (const auto& plane : in) {
                    piece.emplace_back(plane.begin() + long(from), plane.begin() + long(end));
                }
                const Planes out = run(upmix.get(), piece, {64});
                for (size_t o = 0; o < outs; ++o) {
                    heard[o].insert(heard[o].end(), out[o].begin(), out[o].end());
                    const float level = direct ? mn_upmix_take_direct(upmix.get(), int(o))
                                               : mn_upmix_take_ambience(upmix.get(), int(o));
                    powers[o] += double(level) * double(level);
                    const float other = direct ? mn_upmix_take_ambience(upmix.get(), int(o))
                                               : mn_upmix_take_direct(upmix.get(), int(o));
                    if (!exact) { ASSERT_EQ(other, 0) << o; }
                }
            }
            EXPECT_EQ(heard, expected);
            for (size_t o = 0; o < outs; ++o) {
                if (exact && (o == 0 || o == 1)) { continue; }
                double sum = 0;
                for (const float x : expected[o]) { sum += double(x) * double(x); }
                const double rms = std::sqrt(sum / double(expected[o].size()));
                if (rms == 0) { continue; }
                EXPECT_NEAR(20 * std::log10(std::sqrt(powers[o] / taken) / rms), 0, 0.5)
                    << "output " << o << (direct ? ", direct" : ", ambience") << (exact ? ", exact" : "");
            }
        }
    }
}

TEST(Upmix, AChangedDelayFadesAndIsThereAfterOneHop) {
    const Processor upmix = processor();
    RandomPlan random(3);
    // All of the left input, direct or not, on output 0, and nothing else.
    std::vector<float> nothing(2 * outs * steps, 0.0F), left(2 * outs, 0.0F);
    left[0] = 1;
    random.home = {1, 1};
    mn_upmix_plan plan = random.plan;
    plan.pairs = 1;
    plan.direct = nothing.data();
    plan.amb_l = left.data();
    plan.amb_r = nothing.data();
    plan.curve = plan.decor_re = plan.decor_im = plan.lfe_lp = plan.main_hp = plan.delay = nullptr;
    plan.routes = 0;
    const auto tone = test::sine(frames, 441, 48000, 0.5);
    const Planes in(ins, tone);
    constexpr int change = 12000 / size * size;
    const auto part = [&](int from, int count) {
        Planes piece;
        for (const auto& plane : in) { piece.emplace_back(plane.begin() + from, plane.begin() + from + count); }
        return run(upmix.get(), piece, {64})[0];
    };
    const struct {
        float wanted;
        size_t taken;
    } cases[] = {{480, 480}, {-3, 0}, {1e9F, mn_upmix_max_delay}};
    for (const auto& [wanted, taken] : cases) {
        std::vector<float> delays(outs, wanted);
        mn_upmix_plan delayed = plan;
        delayed.delay = delays.data();
        mn_upmix_set_plan(upmix.get(), &plan);
        mn_upmix_reset(upmix.get());
        std::vector<float> out = part(0, change);
        mn_upmix_set_plan(upmix.get(), &delayed);
        const auto rest = part(change, frames - change);
        out.insert(out.end(), rest.begin(), rest.end());
        EXPECT_LT(test::maxJump({out.begin() + 2 * size, out.end()}), 1.1 * test::maxJump(tone)) << wanted;
        // One hop in which the change is found, one that fades.
        for (auto i = size_t(change + size / 2); i < frames; ++i) {
            ASSERT_NEAR(out[i], tone[i - size - taken], 1e-5) << wanted << " at " << i;
        }
    }
}

TEST(Upmix, SamplesThatAreNotFiniteAreOverWithTheirWindow) {
    RandomPlan random(21);
    Planes in = music(9);
    const Processor clean = processor();
    mn_upmix_set_plan(clean.get(), &random.plan);
    Planes damaged = in;
    damaged[0][frames / 4] = std::numeric_limits<float>::quiet_NaN();
    damaged[1][frames / 4 + 1] = std::numeric_limits<float>::infinity();
    damaged[2][frames / 4 + 2] = -std::numeric_limits<float>::infinity();
    const Processor upmix = processor();
    mn_upmix_set_plan(upmix.get(), &random.plan);
    const Planes expected = run(clean.get(), in, {64});
    const Planes out = run(upmix.get(), damaged, {64});
    for (size_t o = 0; o < outs; ++o) {
        EXPECT_TRUE(std::ranges::all_of(out[o], [](float x) { return std::isfinite(x); })) << o;
        // The averages forget what was missing within some tens of hops.
        const std::vector<float> late(out[o].end() - size, out[o].end());
        EXPECT_LT(test::errorDb(late, {expected[o].end() - size, expected[o].end()}), -60) << o;
    }
}

// The greatest finite samples, and next to none: no power overflows, and none decays into denormal numbers.
TEST(Upmix, ExtremeSamplesGiveFiniteOnes) {
    RandomPlan random(22);
    for (const float scale :
         {std::numeric_limits<float>::max(), 1e18F, 1e-20F, std::numeric_limits<float>::denorm_min()}) {
        Planes in = music(4, 12 * size);
        for (auto& plane : in) {
            for (float& x : plane) { x *= scale; }
        }
        const Processor upmix = processor();
        mn_upmix_set_plan(upmix.get(), &random.plan);
        for (const auto& plane : run(upmix.get(), in, {64})) {
            EXPECT_TRUE(std::ranges::all_of(plane, [](float x) { return x == 0 || std::isnormal(x); })) << scale;
        }
    }
}

TEST(Upmix, RefusesSizesThatItCantHoldAndSkipsChannelsThatArentThere) {
    const struct {
        int ins, outs, size;
        bool made;
    } cases[] = {{1, 1, 256, true},    {16, 24, 8192, true}, {17, 2, 1024, false},
                 {2, 25, 1024, false}, {0, 2, 1024, false},  {2, 0, 1024, false},
                 {2, 2, 128, false},   {2, 2, 1000, false},  {2, 2, 16384, false}};
    for (const auto& c : cases) {
        const Processor upmix(mn_upmix_create(c.ins, c.outs, c.size, 0), mn_upmix_destroy);
        EXPECT_EQ(upmix != nullptr, c.made) << c.ins << " " << c.outs << " " << c.size;
        if (!upmix) { continue; }
        mn_upmix_process(upmix.get(), nullptr, 3 * c.size, nullptr);
        mn_upmix_process(upmix.get(), nullptr, -1, nullptr);
    }
    const Processor upmix = processor();
    RandomPlan random(31);
    random.pairs = {0, ins, -1, 2};
    random.routeOut = {outs};
    random.plan.lfe_out = outs;
    mn_upmix_set_plan(upmix.get(), &random.plan);
    for (const auto& plane : run(upmix.get(), music(1), {512})) { EXPECT_EQ(plane, std::vector<float>(frames)); }
}
