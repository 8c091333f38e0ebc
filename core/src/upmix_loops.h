// The loops behind UpmixKernels. Two files include this one and are compiled for different processors; without
// contraction and reassociation all versions round alike.
#pragma once

#include <cmath>
#include <cstdint>

#include "upmix_kernels.h"

// The lists that the next loop writes lie apart from all that it reads at other places.
#if defined(__clang__)
#define BRINDLEHUM_APART _Pragma("clang loop vectorize(assume_safety)")
#else
#define BRINDLEHUM_APART _Pragma("GCC ivdep")
#endif

namespace brindlehum::core {
namespace {

constexpr float halfPi = 1.57079632679F;

// Powers below this are silence: without it the averages would decay into slow denormal numbers.
constexpr float leastPower = 1e-30F;

void average(ConstSpectrum left, ConstSpectrum right, float keep, PairPowers averages, int32_t bins) {
    const float fresh = 1 - keep;
    float* const l = averages.left;
    float* const r = averages.right;
    float* const c = averages.cross;
    BRINDLEHUM_APART
    for (int32_t k = 0; k < bins; ++k) {
        const float l2 = keep * l[k] + fresh * (left.re[k] * left.re[k] + left.im[k] * left.im[k]);
        const float r2 = keep * r[k] + fresh * (right.re[k] * right.re[k] + right.im[k] * right.im[k]);
        const float lr = keep * c[k] + fresh * (left.re[k] * right.re[k] + left.im[k] * right.im[k]);
        l[k] = l2 < leastPower ? 0 : l2;
        r[k] = r2 < leastPower ? 0 : r2;
        c[k] = std::fabs(lr) < leastPower ? 0 : lr;
    }
}

// The angle whose tangent is z, for z from 0 to 1, within 2e-8 (Abramowitz and Stegun, 4.4.49).
inline float arcTangent(float z) {
    const float s = z * z;
    float sum = 0.0028662257F;
    sum = sum * s - 0.0161657367F;
    sum = sum * s + 0.0429096138F;
    sum = sum * s - 0.0752896400F;
    sum = sum * s + 0.1065626393F;
    sum = sum * s - 0.1420889944F;
    sum = sum * s + 0.1999355085F;
    sum = sum * s - 0.3333314528F;
    return z + z * sum * s;
}

void takeApart(const float* left, const float* right, const Split& split, float* direct, float* ambLeft,
               float* ambRight, int32_t bins) {
    BRINDLEHUM_APART
    for (int32_t k = 0; k < bins; ++k) {
        const float d = split.share[k] * (split.cosine[k] * left[k] + split.sine[k] * right[k]);
        direct[k] = d;
        ambLeft[k] = left[k] - split.cosine[k] * d;
        ambRight[k] = right[k] - split.sine[k] * d;
    }
}

// The pan angle and the share of one bin that is direct. With pLL, pRR the powers and c the positive correlation, the
// covariance has its main axis at the angle theta where tan 2 theta = 2 c / (pLL - pRR), and
// rho = ((pLL - pRR)^2 + 4 c^2) / (pLL + pRR)^2 says how much of the energy lies on it. `bias` is the root of what rho
// would be by chance.
struct Axis {
    float cosine, sine;
    float angle;  // 0 (left) to pi / 2 (right)
    float share;
};
inline Axis mainAxis(float left, float right, float cross, float bias, float kappa) {
    const float total = left + right;
    const float scale = total > 0 ? 1 / total : 0;
    const float c = cross > 0 ? cross : 0;
    const float u = (left - right) * scale;
    const float v = 2 * c * scale;
    const float raw = u * u + v * v;
    const float chance = bias * bias;
    const float cleared = raw > chance ? (raw - chance) / (1 - chance) : 0;
    const float rho = cleared < 1 ? cleared : 1;

    const float length = std::sqrt(raw);
    const float cos2 = length > 0 ? u / length : 1;
    const float sin2 = length > 0 ? v / length : 0;
    const float greater = std::sqrt(0.5F + 0.5F * std::fabs(cos2));
    const float lesser = sin2 / (2 * greater);
    const float angle = arcTangent(lesser / greater);
    const bool leftward = cos2 >= 0;

    const float axis = total * std::sqrt(rho);
    const float beside = (total - axis) * 0.5F;
    const float rest = beside > 0 ? beside : 0;
    const float share = axis > 0 ? axis / (axis + kappa * rest + 1e-30F) : 0;
    return {leftward ? greater : lesser, leftward ? lesser : greater, leftward ? angle : halfPi - angle, share};
}

void split(ConstSpectrum left, ConstSpectrum right, PairPowers smoothed, const float* bias, float kappa,
           int32_t panSteps, Split out, int32_t bins) {
    const float toSteps = float(panSteps - 1) / halfPi;
    const auto lastStep = panSteps - 2;
    BRINDLEHUM_APART
    for (int32_t k = 0; k < bins; ++k) {
        const Axis axis = mainAxis(smoothed.left[k], smoothed.right[k], smoothed.cross[k], bias[k], kappa);
        out.cosine[k] = axis.cosine;
        out.sine[k] = axis.sine;
        out.share[k] = axis.share;
        const float place = axis.angle * toSteps;
        const auto floor = int32_t(place);
        const int32_t step = floor < lastStep ? floor : lastStep;
        const float above = place - float(step);
        out.step[k] = step;
        out.part[k] = above < 1 ? above : 1;
    }
    takeApart(left.re, right.re, out, out.direct.re, out.ambLeft.re, out.ambRight.re, bins);
    takeApart(left.im, right.im, out, out.direct.im, out.ambLeft.im, out.ambRight.im, bins);
}

template <bool Fresh>
void put(float value, float& to) {
    to = Fresh ? value : to + value;
}

template <bool Fresh>
void addPanned(const Split& in, const float* pans, Spectrum out, int32_t bins) {
    BRINDLEHUM_APART
    for (int32_t k = 0; k < bins; ++k) {
        const float low = pans[in.step[k]];
        const float gain = low + in.part[k] * (pans[in.step[k] + 1] - low);
        put<Fresh>(gain * in.direct.re[k], out.re[k]);
        put<Fresh>(gain * in.direct.im[k], out.im[k]);
    }
}

template <bool Fresh>
void addOwn(const Split& in, const float* gain, Spectrum out, int32_t bins) {
    BRINDLEHUM_APART
    for (int32_t k = 0; k < bins; ++k) {
        put<Fresh>(gain[k] * in.direct.re[k], out.re[k]);
        put<Fresh>(gain[k] * in.direct.im[k], out.im[k]);
    }
}

// The ambience's curve and turn are templates, so that a plan without them reads nothing for them.
template <bool Fresh, bool Curved, bool Turned>
void addAmbience(const Split& in, const Share& share, Spectrum out, int32_t bins) {
    const float left = share.ambLeft;
    const float right = share.ambRight;
    BRINDLEHUM_APART
    for (int32_t k = 0; k < bins; ++k) {
        float re = left * in.ambLeft.re[k] + right * in.ambRight.re[k];
        float im = left * in.ambLeft.im[k] + right * in.ambRight.im[k];
        if constexpr (Curved) {
            re *= share.curve[k];
            im *= share.curve[k];
        }
        if constexpr (Turned) {
            const float turned = re * share.turn.re[k] - im * share.turn.im[k];
            im = re * share.turn.im[k] + im * share.turn.re[k];
            re = turned;
        }
        put<Fresh>(re, out.re[k]);
        put<Fresh>(im, out.im[k]);
    }
}

template <bool Fresh>
auto ambienceLoop(bool curved, bool turned) {
    return curved ? (turned ? addAmbience<Fresh, true, true> : addAmbience<Fresh, true, false>)
                  : (turned ? addAmbience<Fresh, false, true> : addAmbience<Fresh, false, false>);
}

void spread(const Split& split, const Share& share, Spectrum out, int32_t bins, bool fresh) {
    if (share.own != nullptr) {
        (fresh ? addOwn<true> : addOwn<false>)(split, share.own, out, bins);
        fresh = false;
    } else if (share.pans != nullptr) {
        (fresh ? addPanned<true> : addPanned<false>)(split, share.pans, out, bins);
        fresh = false;
    }
    if (share.ambLeft == 0 && share.ambRight == 0) { return; }
    const bool curved = share.curve != nullptr;
    const bool turned = share.turn.re != nullptr && share.turn.im != nullptr;
    const auto add = fresh ? ambienceLoop<true>(curved, turned) : ambienceLoop<false>(curved, turned);
    add(split, share, out, bins);
}

void join(ConstSpectrum a, ConstSpectrum b, Spectrum out, int32_t size) {
    const int32_t half = size / 2;
    float* const re = out.re + half;
    float* const im = out.im + half;
    out.re[0] = a.re[0];
    out.im[0] = b.re != nullptr ? b.re[0] : 0;
    re[0] = a.re[half];
    im[0] = b.re != nullptr ? b.re[half] : 0;
    if (b.re == nullptr) {
        BRINDLEHUM_APART
        for (int32_t k = 1; k < half; ++k) {
            out.re[k] = a.re[k];
            out.im[k] = a.im[k];
            re[half - k] = a.re[k];
            im[half - k] = -a.im[k];
        }
        return;
    }
    BRINDLEHUM_APART
    for (int32_t k = 1; k < half; ++k) {
        out.re[k] = a.re[k] - b.im[k];
        out.im[k] = a.im[k] + b.re[k];
        re[half - k] = a.re[k] + b.im[k];
        im[half - k] = b.re[k] - a.im[k];
    }
}

void overlap(const float* time, const float* window, float* sum, int32_t size, int32_t hop) {
    for (int32_t from = 0; from < size; from += hop) {
        const bool last = from + hop == size;
        const float* const next = last ? nullptr : sum + from + hop;
        const float* const x = time + from;
        const float* const w = window + from;
        float* const to = sum + from;
        if (last) {
            BRINDLEHUM_APART
            for (int32_t i = 0; i < hop; ++i) { to[i] = w[i] * x[i]; }
        } else {
            BRINDLEHUM_APART
            for (int32_t i = 0; i < hop; ++i) { to[i] = next[i] + w[i] * x[i]; }
        }
    }
}

template <bool Fresh>
void addScaled(ConstSpectrum from, float gain, Spectrum to, int32_t bins) {
    BRINDLEHUM_APART
    for (int32_t k = 0; k < bins; ++k) {
        put<Fresh>(gain * from.re[k], to.re[k]);
        put<Fresh>(gain * from.im[k], to.im[k]);
    }
}

void add(ConstSpectrum from, float gain, Spectrum to, int32_t bins, bool fresh) {
    (fresh ? addScaled<true> : addScaled<false>)(from, gain, to, bins);
}

void scale(Spectrum spectrum, const float* gains, int32_t bins) {
    BRINDLEHUM_APART
    for (int32_t k = 0; k < bins; ++k) {
        spectrum.re[k] *= gains[k];
        spectrum.im[k] *= gains[k];
    }
}

constexpr UpmixKernels kernels = {average, split, spread, join, overlap, add, scale};

}  // namespace
}  // namespace brindlehum::core
