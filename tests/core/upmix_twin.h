// The upmix processor once more: in doubles, with a direct DFT, angle by angle, and no thought for speed.
#pragma once

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>
#include <vector>

#include "core/mn_upmix.h"

namespace brindlehum::test {

class UpmixTwin {
public:
    using Signal = std::vector<double>;
    using Signals = std::vector<Signal>;

    UpmixTwin(int ins, int outs, int size, double rate)
        : n_(size),
          hop_(size / 4),
          bins_(size / 2 + 1),
          keep_(std::exp(-hop_ / (rate * 0.02))),
          outs_(outs),
          time_(size_t(ins), Signal(size_t(size), 0.0)),
          sum_(size_t(outs), Signal(size_t(size), 0.0)) {
        averages_.assign(mn_upmix_max_pairs, Signals(3, Signal(size_t(bins_), 0.0)));
    }

    // Whole hops of each input. The outputs are as late as the processor's, delays included.
    Signals process(const mn_upmix_plan& plan, const std::vector<std::vector<float>>& inputs) {
        Signals outputs(size_t(outs_), Signal(size_t(hop_), 0.0));
        for (size_t from = 0; from < inputs[0].size(); from += size_t(hop_)) {
            for (size_t c = 0; c < inputs.size(); ++c) {
                time_[c].erase(time_[c].begin(), time_[c].begin() + hop_);
                for (int i = 0; i < hop_; ++i) { time_[c].push_back(double(inputs[c][from + size_t(i)])); }
            }
            hop(plan, outputs);
        }
        for (int o = 0; o < outs_ && plan.delay != nullptr; ++o) {
            outputs[size_t(o)].insert(outputs[size_t(o)].begin(), size_t(std::lround(plan.delay[o])), 0.0);
        }
        for (Signal& output : outputs) { output.resize(inputs[0].size()); }
        return outputs;
    }

private:
    using Bins = std::vector<std::complex<double>>;

    double window(int i) const { return std::sqrt(0.5 - 0.5 * std::cos(2 * std::numbers::pi * i / n_)); }
    std::complex<double> turn(int k, int i) const { return std::polar(1.0, 2 * std::numbers::pi * (k * i % n_) / n_); }

    Bins transform(const Signal& x) const {
        Bins out(size_t(bins_), 0.0);
        for (int k = 0; k < bins_; ++k) {
            for (int i = 0; i < n_; ++i) { out[size_t(k)] += window(i) * x[size_t(i)] * std::conj(turn(k, i)); }
        }
        return out;
    }
    Signal inverse(const Bins& bins) const {
        Signal out(size_t(n_), 0.0);
        for (int i = 0; i < n_; ++i) {
            double sum = bins[0].real() + bins.back().real() * (i % 2 == 0 ? 1 : -1);
            for (int k = 1; k + 1 < bins_; ++k) { sum += 2 * (bins[size_t(k)] * turn(k, i)).real(); }
            out[size_t(i)] = window(i) * sum / n_ / 2;
        }
        return out;
    }

    double smooth(const Signal& x, int k) const {
        const int reach = k / 20 + 2;
        double sum = 0;
        int count = 0;
        for (int j = std::max(k - reach, 0); j < std::min(k + reach + 1, bins_); ++j, ++count) { sum += x[size_t(j)]; }
        return sum / count;
    }

    // Adds a pair's bin to all outputs.
    void spread(const mn_upmix_plan& plan, int p, int k, std::complex<double> l, std::complex<double> r,
                std::vector<Bins>& outs) {
        const auto& a = averages_[size_t(p)];
        const double pll = smooth(a[0], k), prr = smooth(a[1], k), c = std::max(smooth(a[2], k), 0.0);
        const double s = pll + prr, x = pll - prr, bias2 = 1.21 / (2 * (k / 20 + 2) + 1);
        double rho = s > 0 ? (x * x + 4 * c * c) / (s * s) : 0;
        rho = rho > bias2 ? std::min((rho - bias2) / (1 - bias2), 1.0) : 0;
        const double axis = s * std::sqrt(rho), theta = 0.5 * std::atan2(2 * c, x);
        const double kappa = plan.kappa != nullptr ? double(plan.kappa[p]) : 1;
        const double d = axis > 0 ? axis / (axis + kappa * std::max((s - axis) / 2, 0.0) + 1e-30) : 0;
        const auto direct = d * (std::cos(theta) * l + std::sin(theta) * r);
        const auto ambL = l - std::cos(theta) * direct, ambR = r - std::sin(theta) * direct;
        const double place = theta / (std::numbers::pi / 2) * (plan.pan_steps - 1);
        const int step = std::min(int(place), plan.pan_steps - 2);
        std::complex<double> foldL = 0, foldR = 0;
        for (int o = 0; o < outs_; ++o) {
            const bool owner = o == plan.own_l[p] || o == plan.own_r[p];
            if (plan.exact != 0 && owner) { continue; }
            const int cell = p * outs_ + o;
            const float* pans = plan.direct + cell * plan.pan_steps;
            double g = double(pans[step]) + (place - step) * (double(pans[step + 1]) - double(pans[step]));
            if (plan.home != nullptr && plan.home[p] != 0 && owner) {
                g = o == plan.own_l[p] ? std::cos(theta) : std::sin(theta);
            }
            auto ambience = double(plan.amb_l[cell]) * ambL + double(plan.amb_r[cell]) * ambR;
            if (plan.curve != nullptr) { ambience *= double(plan.curve[o * bins_ + k]); }
            if (plan.decor_re != nullptr) {
                ambience *= std::complex<double>(plan.decor_re[o * bins_ + k], plan.decor_im[o * bins_ + k]);
            }
            const auto share = g * direct + ambience;
            outs[size_t(o)][size_t(k)] += share;
            foldL += double(plan.fold_l[cell]) * share;
            foldR += double(plan.fold_r[cell]) * share;
        }
        if (plan.exact == 0) { return; }
        outs[size_t(plan.own_l[p])][size_t(k)] += l - foldL;
        outs[size_t(plan.own_r[p])][size_t(k)] += r - foldR;
    }

    void hop(const mn_upmix_plan& plan, Signals& outputs) {
        std::vector<Bins> in;
        for (const Signal& time : time_) { in.push_back(transform(time)); }
        std::vector<Bins> outs(size_t(outs_), Bins(size_t(bins_), 0.0));
        for (int p = 0; p < plan.pairs; ++p) {
            const Bins& l = in[size_t(plan.pair_in[2 * p])];
            const Bins& r = in[size_t(plan.pair_in[2 * p + 1])];
            auto& a = averages_[size_t(p)];
            for (size_t k = 0; k < l.size(); ++k) {
                a[0][k] = keep_ * a[0][k] + (1 - keep_) * std::norm(l[k]);
                a[1][k] = keep_ * a[1][k] + (1 - keep_) * std::norm(r[k]);
                a[2][k] = keep_ * a[2][k] + (1 - keep_) * (l[k] * std::conj(r[k])).real();
            }
            for (int k = 0; k < bins_; ++k) { spread(plan, p, k, l[size_t(k)], r[size_t(k)], outs); }
        }
        for (int k = 0; k < bins_; ++k) {
            const auto i = size_t(k);
            for (int r = 0; r < plan.routes; ++r) {
                outs[size_t(plan.route_out[r])][i] += double(plan.route_gain[r]) * in[size_t(plan.route_in[r])][i];
            }
            for (int o = 0; o < outs_ && plan.main_hp != nullptr; ++o) {
                if (o != plan.lfe_out) { outs[size_t(o)][i] *= double(plan.main_hp[k]); }
            }
            if (plan.lfe_lp != nullptr) {
                outs[size_t(plan.lfe_out)][i] += double(plan.lfe_gain) * double(plan.lfe_lp[k]) *
                                                 (in[size_t(plan.pair_in[0])][i] + in[size_t(plan.pair_in[1])][i]);
            }
        }
        for (size_t o = 0; o < outs.size(); ++o) {
            const Signal block = inverse(outs[o]);
            for (size_t i = 0; i < block.size(); ++i) { sum_[o][i] += block[i]; }
            outputs[o].insert(outputs[o].end(), sum_[o].begin(), sum_[o].begin() + hop_);
            sum_[o].erase(sum_[o].begin(), sum_[o].begin() + hop_);
            sum_[o].resize(size_t(n_));
        }
    }

    int n_, hop_, bins_;
    double keep_;
    int outs_;
    Signals time_, sum_;
    std::vector<Signals> averages_;
};

}  // namespace brindlehum::test
