// A synthetic piece: drums, bass and chords at 120 BPM in sections of 8 bars, with noise that never repeats.
#pragma once

#include <cmath>
#include <cstdint>
#include <numbers>
#include <vector>

namespace brindlehum::bench {

using Planes = std::vector<std::vector<float>>;

// Two bars of 4/4 on a chord: 4 s.
inline std::vector<float> phrase(double rate, int root, double drums) {
    std::vector<float> x(size_t(4 * rate));
    for (size_t i = 0; i < x.size(); ++i) {
        const double t = double(i) / rate;
        const double beat = std::fmod(t, 0.5);
        double sum = drums * std::exp(-beat * 40) * std::sin(2 * std::numbers::pi * 1800 * beat);
        if (std::fmod(t, 2.0) < 0.5) { sum += 0.4 * std::exp(-beat * 6) * std::sin(2 * std::numbers::pi * 60 * beat); }
        for (const int note : {root, root + 4, root + 7}) {
            const double hz = 440 * std::exp2((note - 69) / 12.0);
            sum += 0.05 * std::sin(2 * std::numbers::pi * hz * t) + 0.02 * std::sin(4 * std::numbers::pi * hz * t);
        }
        x[i] = float(sum);
    }
    return x;
}

inline Planes makePiece(double seconds, double rate, int channels) {
    const std::vector<std::vector<float>> phrases = {phrase(rate, 48, 0.3), phrase(rate, 53, 0.3),
                                                     phrase(rate, 55, 0.4), phrase(rate, 45, 0.1)};
    Planes out(size_t(channels), std::vector<float>(size_t(seconds * rate)));
    uint32_t seed = 1;
    for (auto& plane : out) {
        const size_t length = phrases[0].size();
        for (size_t i = 0; i < plane.size(); ++i) {
            const size_t bars = i / length;  // pairs of them
            seed = seed * 1664525 + 1013904223;
            const float noise = float(int32_t(seed)) * (0.02F / 2147483648.0F);
            plane[i] = phrases[(bars / 4 + bars % 2) % 4][i % length] + noise;
        }
    }
    return out;
}

}  // namespace brindlehum::bench
