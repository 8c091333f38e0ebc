// One hop of the upmix processor: transforms, the split of each pair, the spread over the outputs, overlap and delays.
#include <algorithm>
#include <bit>
#include <cmath>
#include <utility>

#include "upmix_levels.h"
#include "upmix_state.h"

namespace brindlehum::core {
namespace {

bool isInput(const mn_upmix& u, int32_t index) {
    return index >= 0 && index < u.ins;
}
bool isOutput(const mn_upmix& u, int32_t index) {
    return index >= 0 && index < u.outs;
}

ConstSpectrum transformed(mn_upmix& u, int32_t input) {
    UpmixInput& in = u.in[size_t(input)];
    if (!in.transformed) {
        for (int32_t n = 0; n < u.size; ++n) { u.time[n] = in.time[n] * u.window[n]; }
        mn_fft_forward(u.fft, u.time, u.spectrum);
        for (int32_t k = 0; k < u.bins; ++k) {
            in.spectrum.re[k] = u.spectrum[2 * k];
            in.spectrum.im[k] = u.spectrum[2 * k + 1];
        }
        in.transformed = true;
    }
    return read(in.spectrum);
}

struct Collected {
    Spectrum spectrum;
    bool fresh;  // it holds the last hop's
};

// The spectrum that an output collects.
Collected collected(mn_upmix& u, int32_t output) {
    UpmixOutput& out = u.out[size_t(output)];
    return {out.spectrum, !std::exchange(out.used, true)};
}

void addTo(mn_upmix& u, int32_t output, ConstSpectrum from, float gain) {
    const Collected to = collected(u, output);
    u.kernels->add(from, gain, to.spectrum, u.bins, to.fresh);
}

bool anyNonZero(const float* list, int32_t count) {
    uint32_t bits = 0;
    for (int32_t i = 0; i < count; ++i) { bits |= std::bit_cast<uint32_t>(list[i]) << 1; }
    return bits != 0;
}

}  // namespace

Share shareOf(const mn_upmix& u, const mn_upmix_plan& plan, int32_t p, int32_t i) {
    const int64_t cell = int64_t(p) * u.outs + i;
    const int64_t row = int64_t(i) * u.bins;
    Share share{};
    const bool home = plan.home != nullptr && plan.home[p] != 0;
    if (home && i == plan.own_l[p]) {
        share.own = u.split.cosine;
    } else if (home && i == plan.own_r[p]) {
        share.own = u.split.sine;
    } else if (plan.direct != nullptr && anyNonZero(plan.direct + cell * plan.pan_steps, plan.pan_steps)) {
        share.pans = plan.direct + cell * plan.pan_steps;
    }
    share.ambLeft = plan.amb_l != nullptr ? plan.amb_l[cell] : 0;
    share.ambRight = plan.amb_r != nullptr ? plan.amb_r[cell] : 0;
    if (plan.curve != nullptr) { share.curve = plan.curve + row; }
    if (plan.decor_re != nullptr && plan.decor_im != nullptr) {
        share.turn = {plan.decor_re + row, plan.decor_im + row};
    }
    return share;
}

bool isSilent(const Share& share) {
    return share.pans == nullptr && share.own == nullptr && share.ambLeft == 0 && share.ambRight == 0;
}

namespace {

void spreadPair(mn_upmix& u, const mn_upmix_plan& plan, int32_t p) {
    for (int32_t i = 0; i < u.outs; ++i) {
        const Share share = shareOf(u, plan, p, i);
        if (isSilent(share)) { continue; }
        const Collected to = collected(u, i);
        u.kernels->spread(u.split, share, to.spectrum, u.bins, to.fresh);
    }
}

// The owners get what the others' fold-down leaves of the inputs, so the fold-down of all outputs is the inputs.
void spreadExactly(mn_upmix& u, const mn_upmix_plan& plan, int32_t p, ConstSpectrum left, ConstSpectrum right) {
    clear(u.foldLeft, u.bins);
    clear(u.foldRight, u.bins);
    for (int32_t i = 0; i < u.outs; ++i) {
        if (i == plan.own_l[p] || i == plan.own_r[p]) { continue; }
        const Share share = shareOf(u, plan, p, i);
        if (isSilent(share)) { continue; }
        u.kernels->spread(u.split, share, u.spread, u.bins, true);
        addTo(u, i, read(u.spread), 1);
        u.kernels->add(read(u.spread), -plan.fold_l[int64_t(p) * u.outs + i], u.foldLeft, u.bins, false);
        u.kernels->add(read(u.spread), -plan.fold_r[int64_t(p) * u.outs + i], u.foldRight, u.bins, false);
    }
    u.kernels->add(left, 1, u.foldLeft, u.bins, false);
    u.kernels->add(right, 1, u.foldRight, u.bins, false);
    addTo(u, plan.own_l[p], read(u.foldLeft), 1);
    addTo(u, plan.own_r[p], read(u.foldRight), 1);
}

bool isWhole(const mn_upmix& u, const mn_upmix_plan& plan, int32_t p) {
    if (plan.pan_steps < 2 || !isInput(u, plan.pair_in[2 * p]) || !isInput(u, plan.pair_in[2 * p + 1])) {
        return false;
    }
    const bool home = plan.home != nullptr && plan.home[p] != 0;
    return (plan.exact == 0 && !home) || (isOutput(u, plan.own_l[p]) && isOutput(u, plan.own_r[p]));
}

void steer(mn_upmix& u, const mn_upmix_plan& plan, int32_t p) {
    if (!isWhole(u, plan, p)) { return; }
    const ConstSpectrum left = transformed(u, plan.pair_in[2 * p]);
    const ConstSpectrum right = transformed(u, plan.pair_in[2 * p + 1]);
    const PairPowers averages = u.averages[size_t(p)];
    u.kernels->average(left, right, u.keep, averages, u.bins);
    smoothPowers(averages, u.sums, u.smoothed, u.bins);
    const float kappa = plan.kappa != nullptr ? plan.kappa[p] : 1;
    u.kernels->split(left, right, u.smoothed, u.bias, kappa, plan.pan_steps, u.split, u.bins);
    if (plan.exact != 0) {
        spreadExactly(u, plan, p, left, right);
    } else {
        spreadPair(u, plan, p);
    }
    if (u.measuresHop) { measurePair(u, plan, p); }
}

void route(mn_upmix& u, const mn_upmix_plan& plan) {
    for (int32_t r = 0; r < plan.routes; ++r) {
        if (!isInput(u, plan.route_in[r]) || !isOutput(u, plan.route_out[r])) { continue; }
        const ConstSpectrum in = transformed(u, plan.route_in[r]);
        addTo(u, plan.route_out[r], in, plan.route_gain[r]);
        if (u.measuresHop) { measureRoute(u, plan.route_out[r], in, plan.route_gain[r]); }
    }
}

void sendBass(mn_upmix& u, const mn_upmix_plan& plan) {
    if (plan.main_hp != nullptr) {
        for (int32_t i = 0; i < u.outs; ++i) {
            if (i == plan.lfe_out || !u.out[size_t(i)].used) { continue; }
            u.kernels->scale(u.out[size_t(i)].spectrum, plan.main_hp, u.bins);
        }
    }
    if (plan.lfe_lp == nullptr || !isOutput(u, plan.lfe_out) || plan.pairs < 1 || !isInput(u, plan.pair_in[0]) ||
        !isInput(u, plan.pair_in[1])) {
        return;
    }
    const ConstSpectrum left = transformed(u, plan.pair_in[0]);
    const ConstSpectrum right = transformed(u, plan.pair_in[1]);
    u.kernels->add(left, plan.lfe_gain, u.spread, u.bins, true);
    u.kernels->add(right, plan.lfe_gain, u.spread, u.bins, false);
    u.kernels->scale(u.spread, plan.lfe_lp, u.bins);
    addTo(u, plan.lfe_out, read(u.spread), 1);
    if (u.measuresHop) { measureRoute(u, plan.lfe_out, read(u.spread), 1); }
}

void shift(mn_upmix& u, UpmixOutput& out) {
    std::copy(out.sum + u.hop, out.sum + u.size, out.sum);
    std::fill_n(out.sum + u.size - u.hop, u.hop, 0.0F);
}

void overlapTwo(mn_upmix& u, UpmixOutput& a, UpmixOutput* b) {
    const ConstSpectrum second = b != nullptr ? read(b->spectrum) : ConstSpectrum{};
    u.kernels->join(read(a.spectrum), second, u.joined, u.size);
    mn_fft_pair_inverse(u.pair, u.joined.re, u.joined.im, u.time, u.other);
    u.kernels->overlap(u.time, u.synthesis, a.sum, u.size, u.hop);
    if (b != nullptr) { u.kernels->overlap(u.other, u.synthesis, b->sum, u.size, u.hop); }
}

// The hop's samples end up first in every `sum`. Outputs without a spectrum stay apart from the errors of the others.
void overlapAll(mn_upmix& u) {
    UpmixOutput* waiting = nullptr;
    for (int32_t i = 0; i < u.outs; ++i) {
        UpmixOutput& out = u.out[size_t(i)];
        if (!out.used) {
            shift(u, out);
        } else if (waiting == nullptr) {
            waiting = &out;
        } else {
            overlapTwo(u, *waiting, &out);
            waiting = nullptr;
        }
    }
    if (waiting != nullptr) { overlapTwo(u, *waiting, nullptr); }
}

// Copies a hop that ended `delay` samples before the newest one.
void tap(const mn_upmix& u, const UpmixOutput& out, int32_t delay, float* to) {
    const int32_t from = (u.writeIndex - delay + delayRingFrames) % delayRingFrames;
    const int32_t first = std::min(u.hop, delayRingFrames - from);
    std::copy_n(out.history + from, first, to);
    std::copy_n(out.history, u.hop - first, to + first);
}

void delayOutput(mn_upmix& u, UpmixOutput& out, int32_t delay) {
    std::copy_n(out.sum, u.hop, out.history + u.writeIndex);
    tap(u, out, out.delay, out.block);
    if (delay == out.delay) { return; }
    tap(u, out, delay, u.time);
    for (int32_t j = 0; j < u.hop; ++j) {
        const float weight = float(j + 1) / float(u.hop);
        out.block[j] += weight * (u.time[j] - out.block[j]);
    }
    out.delay = delay;
}

}  // namespace

int32_t plannedDelay(const mn_upmix_plan* plan, int32_t output) {
    if (plan == nullptr || plan->delay == nullptr) { return 0; }
    const float delay = plan->delay[output];
    return delay > 0 ? int32_t(std::lround(std::min(delay, float(mn_upmix_max_delay)))) : 0;
}

void runUpmixHop(mn_upmix& u) {
    const mn_upmix_plan* plan = u.plan.load(std::memory_order_acquire);
    for (int32_t c = 0; c < u.ins; ++c) { u.in[size_t(c)].transformed = false; }
    for (int32_t i = 0; i < u.outs; ++i) { u.out[size_t(i)].used = false; }
    beginLevels(u);
    if (plan != nullptr) {
        for (int32_t p = 0; p < std::min<int32_t>(plan->pairs, mn_upmix_max_pairs); ++p) { steer(u, *plan, p); }
        route(u, *plan);
        sendBass(u, *plan);
    }
    publishLevels(u);
    overlapAll(u);
    for (int32_t i = 0; i < u.outs; ++i) { delayOutput(u, u.out[size_t(i)], plannedDelay(plan, i)); }
    u.writeIndex = (u.writeIndex + u.hop) % delayRingFrames;
    for (int32_t c = 0; c < u.ins; ++c) {
        float* time = u.in[size_t(c)].time;
        std::copy(time + u.hop, time + u.size, time);
    }
}

}  // namespace brindlehum::core
