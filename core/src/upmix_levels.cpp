// Levels: spreads the direct part and the ambience of a pair apart from each other, once more, and sums their powers.
#include "upmix_levels.h"

#include <cmath>

namespace brindlehum::core {
namespace {

constexpr uint32_t measuredHops = 6;  // one in so many: about 30 a second

enum class Part { direct, ambience };

Share only(Part part, Share share) {
    if (part == Part::direct) {
        share.ambLeft = share.ambRight = 0;
    } else {
        share.pans = share.own = nullptr;
    }
    return share;
}

// In eight sums, so that the compiler may vectorise it.
float power(ConstSpectrum s, int32_t bins) {
    float sums[8] = {};
    int32_t k = 0;
    for (; k + 8 <= bins; k += 8) {
        for (int32_t i = 0; i < 8; ++i) { sums[i] += s.re[k + i] * s.re[k + i] + s.im[k + i] * s.im[k + i]; }
    }
    for (; k < bins; ++k) { sums[0] += s.re[k] * s.re[k] + s.im[k] * s.im[k]; }
    return ((sums[0] + sums[1]) + (sums[2] + sums[3])) + ((sums[4] + sums[5]) + (sums[6] + sums[7]));
}

// What the others' fold-down leaves to the owners of an exact plan.
void finishOwners(mn_upmix& u, const mn_upmix_plan& plan, int32_t p, Part part, float* powers) {
    if (part == Part::direct) {
        Share share{};
        share.own = u.split.cosine;
        u.kernels->spread(u.split, share, u.foldLeft, u.bins, false);
        share.own = u.split.sine;
        u.kernels->spread(u.split, share, u.foldRight, u.bins, false);
    } else {
        u.kernels->add(read(u.split.ambLeft), 1, u.foldLeft, u.bins, false);
        u.kernels->add(read(u.split.ambRight), 1, u.foldRight, u.bins, false);
    }
    powers[plan.own_l[p]] += power(read(u.foldLeft), u.bins);
    powers[plan.own_r[p]] += power(read(u.foldRight), u.bins);
}

void measurePart(mn_upmix& u, const mn_upmix_plan& plan, int32_t p, Part part, float* powers) {
    const bool exact = plan.exact != 0;
    if (exact) {
        clear(u.foldLeft, u.bins);
        clear(u.foldRight, u.bins);
    }
    for (int32_t i = 0; i < u.outs; ++i) {
        if (exact && (i == plan.own_l[p] || i == plan.own_r[p])) { continue; }
        const Share share = only(part, shareOf(u, plan, p, i));
        if (isSilent(share)) { continue; }
        u.kernels->spread(u.split, share, u.spread, u.bins, true);
        powers[i] += power(read(u.spread), u.bins);
        if (!exact) { continue; }
        u.kernels->add(read(u.spread), -plan.fold_l[int64_t(p) * u.outs + i], u.foldLeft, u.bins, false);
        u.kernels->add(read(u.spread), -plan.fold_r[int64_t(p) * u.outs + i], u.foldRight, u.bins, false);
    }
    if (exact) { finishOwners(u, plan, p, part, powers); }
}

}  // namespace

void beginLevels(mn_upmix& u) {
    u.measuresHop = u.measures.load(std::memory_order_relaxed) != 0 && u.hops++ % measuredHops == 0;
    if (!u.measuresHop) { return; }
    u.directPowers.fill(0);
    u.ambiencePowers.fill(0);
}

void measurePair(mn_upmix& u, const mn_upmix_plan& plan, int32_t p) {
    measurePart(u, plan, p, Part::direct, u.directPowers.data());
    measurePart(u, plan, p, Part::ambience, u.ambiencePowers.data());
}

void measureRoute(mn_upmix& u, int32_t output, ConstSpectrum spectrum, float gain) {
    u.directPowers[size_t(output)] += gain * gain * power(spectrum, u.bins);
}

// The bins hold half of the power, and the squared window the half of that.
void publishLevels(mn_upmix& u) {
    if (!u.measuresHop) { return; }
    const float scale = 2.0F / float(u.size);
    for (int32_t i = 0; i < u.outs; ++i) {
        mn_peaks_raise(u.directPeaks, i, scale * std::sqrt(u.directPowers[size_t(i)]));
        mn_peaks_raise(u.ambiencePeaks, i, scale * std::sqrt(u.ambiencePowers[size_t(i)]));
    }
}

}  // namespace brindlehum::core
