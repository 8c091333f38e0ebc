// The inner loops of the upmix processor, in versions for different processors that return the same bits.
#pragma once

#include <cstdint>

namespace brindlehum::core {

struct Spectrum {
    float* re;
    float* im;
};
struct ConstSpectrum {
    const float* re;
    const float* im;
};

// Recursive averages of a pair, and of each the average over neighbouring bins. One value a bin.
struct PairPowers {
    float* left;   // |L|^2
    float* right;  // |R|^2
    float* cross;  // Re(L conj R)
};

// One hop of a pair, split. One value a bin.
struct Split {
    float* cosine;  // of the pan angle
    float* sine;
    int32_t* step;  // pan step at or below the angle
    float* part;    // from that step to the next, 0 to 1
    float* share;   // of the projection on the axis that is direct, 0 to 1
    Spectrum direct;
    Spectrum ambLeft, ambRight;
};

// What one output takes of a pair.
struct Share {
    const float* pans;  // gain a pan step; null: no direct part
    const float* own;   // gain a bin instead: the split's cosine or sine; null: none
    float ambLeft, ambRight;
    const float* curve;  // a bin; null: 1
    ConstSpectrum turn;  // unit factor a bin; null: 1
};

struct UpmixKernels {
    // average = keep x average + (1 - keep) x this hop's power. Averages of next to nothing become 0.
    void (*average)(ConstSpectrum left, ConstSpectrum right, float keep, PairPowers averages, int32_t bins);
    // The pan angle and direct share from smoothed powers, and both parts of the spectra. `bias` a bin.
    void (*split)(ConstSpectrum left, ConstSpectrum right, PairPowers smoothed, const float* bias, float kappa,
                  int32_t panSteps, Split out, int32_t bins);
    // Adds an output's share, which has some part, to its spectrum; writes it over a `fresh` one, which holds nothing
    // yet.
    void (*spread)(const Split& split, const Share& share, Spectrum out, int32_t bins, bool fresh);
    // A + i B over all `size` bins, for mn_fft_pair_inverse; a null B is 0. What A and B say of the imaginary parts at
    // 0 Hz and at the Nyquist frequency is left out.
    void (*join)(ConstSpectrum a, ConstSpectrum b, Spectrum out, int32_t size);
    // Overlap-add: moves `sum` down by `hop` and adds window x time; `sum` and `time` hold `size` samples.
    void (*overlap)(const float* time, const float* window, float* sum, int32_t size, int32_t hop);
    // Adds gain x from; writes it over a fresh spectrum.
    void (*add)(ConstSpectrum from, float gain, Spectrum to, int32_t bins, bool fresh);
    // Multiplies by a gain a bin.
    void (*scale)(Spectrum spectrum, const float* gains, int32_t bins);
};

const UpmixKernels& plainUpmixKernels();
// Null where the processor lacks AVX2.
const UpmixKernels* avx2UpmixKernels();
const UpmixKernels& fastestUpmixKernels();

}  // namespace brindlehum::core
