// Test signals: seeded noise, sines, and measures in decibels.
#pragma once

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <numbers>
#include <random>
#include <vector>

namespace brindlehum::test {

// Uniform noise in -1 to 1, the seed printed on first use so that a failure can be repeated.
inline std::vector<float> noise(size_t frames, uint32_t seed) {
    std::mt19937 engine(seed);
    std::uniform_real_distribution<float> uniform(-1.0F, 1.0F);
    std::vector<float> out(frames);
    for (float& x : out) { x = uniform(engine); }
    return out;
}

inline std::vector<float> sine(size_t frames, double hz, double rate, double amplitude = 1.0, double phase = 0.0) {
    std::vector<float> out(frames);
    for (size_t i = 0; i < frames; ++i) {
        out[i] = float(amplitude * std::sin(2 * std::numbers::pi * hz * double(i) / rate + phase));
    }
    return out;
}

// Energy of a - b over energy of b, in dB; -400 when equal.
inline double errorDb(const std::vector<float>& a, const std::vector<float>& b) {
    double error = 0;
    double energy = 0;
    for (size_t i = 0; i < b.size(); ++i) {
        const double d = double(i < a.size() ? a[i] : 0) - double(b[i]);
        error += d * d;
        energy += double(b[i]) * double(b[i]);
    }
    return error == 0 ? -400 : 10 * std::log10(error / std::max(energy, 1e-300));
}

// Adds the convolution of `x` with `h`, times `gain`, up to the end of `sum`.
inline void convolveInto(std::vector<double>& sum, const std::vector<float>& x, const std::vector<float>& h,
                         double gain = 1) {
    for (size_t i = 0; i < x.size(); ++i) {
        if (x[i] == 0) { continue; }
        for (size_t k = 0; k < h.size() && i + k < sum.size(); ++k) {
            sum[i + k] += gain * double(h[k]) * double(x[i]);
        }
    }
}

inline double maxJump(const std::vector<float>& x) {
    double jump = 0;
    for (size_t i = 1; i < x.size(); ++i) { jump = std::max(jump, std::abs(double(x[i]) - double(x[i - 1]))); }
    return jump;
}

}  // namespace brindlehum::test
