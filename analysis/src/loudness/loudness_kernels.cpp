// K weighting vectorised across channels, and the true-peak interpolator across outputs and phases.
#include "loudness/loudness_kernels.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#define BRINDLEHUM_INLINE __attribute__((always_inline)) inline

namespace brindlehum::Loudness {
namespace {

template <int N>
struct Vector {
    typedef double Doubles __attribute__((vector_size(N * sizeof(double))));
    typedef float Floats __attribute__((vector_size(N * sizeof(float))));
};

template <int N>
struct Section {
    using Doubles = typename Vector<N>::Doubles;
    Doubles x1 = {}, x2 = {}, y1 = {}, y2 = {};

    BRINDLEHUM_INLINE void load(const KState::Stage& from) {
        std::memcpy(&x1, from.x1, sizeof x1);
        std::memcpy(&x2, from.x2, sizeof x2);
        std::memcpy(&y1, from.y1, sizeof y1);
        std::memcpy(&y2, from.y2, sizeof y2);
    }
    BRINDLEHUM_INLINE void store(KState::Stage& to) const {
        std::memcpy(to.x1, &x1, sizeof x1);
        std::memcpy(to.x2, &x2, sizeof x2);
        std::memcpy(to.y1, &y1, sizeof y1);
        std::memcpy(to.y2, &y2, sizeof y2);
    }
    // Direct form I, in place. The newest output is subtracted last, so that only one operation waits for it. The
    // output is rounded to a float, the filter's own memory isn't.
    BRINDLEHUM_INLINE void step(const Biquad& f, Doubles& x) {
        const Doubles y = (f.b0 * x + f.b1 * x1 + f.b2 * x2 - f.a2 * y2) - f.a1 * y1;
        x2 = x1;
        x1 = x;
        y2 = y1;
        y1 = y;
        x = __builtin_convertvector(__builtin_convertvector(y, typename Vector<N>::Floats), Doubles);
    }
};

template <int N>
BRINDLEHUM_INLINE void kEnergy(const float* const* channels, int64_t from, int64_t count, const Biquad& shelfFilter,
                               const Biquad& highPassFilter, KState& state, double* energies) {
    using Doubles = typename Vector<N>::Doubles;
    const float* in[N];
    for (int c = 0; c < N; ++c) { in[c] = channels[c] + from; }
    const Biquad first = shelfFilter;
    const Biquad second = highPassFilter;
    Section<N> shelf;
    Section<N> highPass;
    shelf.load(state.shelf);
    highPass.load(state.highPass);
    Doubles sum = {};
    for (int64_t i = 0; i < count; ++i) {
        Doubles x;
        for (int c = 0; c < N; ++c) { x[c] = double(in[c][i]); }
        shelf.step(first, x);
        highPass.step(second, x);
        sum += x * x;
    }
    shelf.store(state.shelf);
    highPass.store(state.highPass);
    for (int c = 0; c < N; ++c) { energies[c] += sum[c]; }
}

// Computes `Wide` vectors of `Lanes` outputs at a time, all phases: Wide x 4 sums stay in registers.
template <int Lanes, int Wide>
BRINDLEHUM_INLINE float peakBlock(const float* x, const PeakFilter& filter) {
    using Floats = typename Vector<Lanes>::Floats;
    Floats largest = {};
    for (int at = 0; at < peakTaps; at += Lanes * Wide) {
        Floats sums[peakPhases][Wide] = {};
        for (int k = 0; k < peakTaps; ++k) {
            for (int v = 0; v < Wide; ++v) {
                Floats samples;
                std::memcpy(&samples, x + (at + k + v * Lanes), sizeof samples);
                for (int p = 0; p < peakPhases; ++p) { sums[p][v] += samples * filter[size_t(k)][size_t(p)]; }
            }
        }
        for (const auto& phase : sums) {
            for (const Floats& sum : phase) {
                const Floats magnitude = sum < 0 ? -sum : sum;
                largest = largest < magnitude ? magnitude : largest;
            }
        }
    }
    float peak = 0;
    for (int i = 0; i < Lanes; ++i) { peak = std::max(peak, float(largest[i])); }
    return peak;
}

template <int Lanes>
BRINDLEHUM_INLINE float largestOf(const float* x, int64_t count) {
    using Floats = typename Vector<Lanes>::Floats;
    Floats largest = {};
    int64_t i = 0;
    for (; i + Lanes <= count; i += Lanes) {
        Floats samples;
        std::memcpy(&samples, x + i, sizeof samples);
        const Floats magnitude = samples < 0 ? -samples : samples;
        largest = largest < magnitude ? magnitude : largest;
    }
    float peak = 0;
    for (; i < count; ++i) { peak = std::max(peak, std::abs(x[i])); }
    for (int j = 0; j < Lanes; ++j) { peak = std::max(peak, float(largest[j])); }
    return peak;
}

#define BRINDLEHUM_K_ENERGY(name, lanes, target)                                                     \
    target void name(const float* const* channels, int64_t from, int64_t count, const Biquad& shelf, \
                     const Biquad& highPass, KState& state, double* energies) {                      \
        kEnergy<lanes>(channels, from, count, shelf, highPass, state, energies);                     \
    }

BRINDLEHUM_K_ENERGY(kOne, 1, )
BRINDLEHUM_K_ENERGY(kTwo, 2, )
BRINDLEHUM_K_ENERGY(kFour, 4, )
float peakPlain(const float* x, const PeakFilter& filter) {
    return peakBlock<4, 2>(x, filter);
}
float largestPlain(const float* x, int64_t count) {
    return largestOf<4>(x, count);
}

#if defined(__x86_64__)
#define BRINDLEHUM_AVX2 __attribute__((target("avx2,fma")))
BRINDLEHUM_K_ENERGY(kOneAvx2, 1, BRINDLEHUM_AVX2)
BRINDLEHUM_K_ENERGY(kTwoAvx2, 2, BRINDLEHUM_AVX2)
BRINDLEHUM_K_ENERGY(kFourAvx2, 4, BRINDLEHUM_AVX2)
BRINDLEHUM_AVX2 float peakAvx2(const float* x, const PeakFilter& filter) {
    return peakBlock<8, 3>(x, filter);
}
BRINDLEHUM_AVX2 float largestAvx2(const float* x, int64_t count) {
    return largestOf<8>(x, count);
}
#endif

}  // namespace

const Kernels& plainKernels() {
    static constexpr Kernels kernels{kOne, kTwo, kFour, peakPlain, largestPlain};
    return kernels;
}

const Kernels& fastestKernels() {
#if defined(__x86_64__)
    static constexpr Kernels avx2{kOneAvx2, kTwoAvx2, kFourAvx2, peakAvx2, largestAvx2};
    static const bool usable = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma");
    if (usable) { return avx2; }
#endif
    return plainKernels();
}

}  // namespace brindlehum::Loudness
