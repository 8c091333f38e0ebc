// Music of known tempo, key and form, made by formula at 22 050 Hz.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <vector>

#include "dsp/signal.h"

namespace brindlehum::test {

inline constexpr double musicRate = Signal::analysisRate;

// Adds a decaying tone that starts on the sample next to `seconds` and rises over `attackSeconds`.
inline void addTone(std::vector<float>& x, double seconds, double hz, double gain, double decaySeconds,
                    double attackSeconds = 0, double sampleRate = musicRate) {
    const auto start = size_t(std::llround(seconds * sampleRate));
    const size_t end = std::min(start + size_t(decaySeconds * 6 * sampleRate), x.size());
    for (size_t i = start; i < end; ++i) {
        const double t = double(i - start) / sampleRate;
        const double rise = attackSeconds > 0 ? std::min(t / attackSeconds, 1.0) : 1;
        x[i] += float(gain * rise * std::exp(-t / decaySeconds) * std::sin(2 * std::numbers::pi * hz * t));
    }
}

// Beat times at a tempo that may change over time: `bpmAt(seconds)`.
template <class BpmAt>
std::vector<double> beatTimes(double from, double to, BpmAt bpmAt) {
    std::vector<double> beats;
    for (double t = from; t < to; t += 60.0 / double(bpmAt(t))) { beats.push_back(t); }
    return beats;
}

// Bright clicks, and on each downbeat a bass note that takes 20 ms to speak.
inline std::vector<float> clickTrack(const std::vector<double>& beats, int group, int pickup, double seconds) {
    std::vector<float> x(size_t(seconds * musicRate), 0.0F);
    for (size_t i = 0; i < beats.size(); ++i) {
        addTone(x, beats[i], 2500, 0.5, 0.02);
        if (int(i) % group == pickup % group) { addTone(x, beats[i], 80, 0.4, 0.06, 0.02); }
    }
    return x;
}

// Adds a held chord of MIDI notes, four harmonics each.
inline void addChord(std::vector<float>& x, double from, double to, const std::vector<int>& notes, double gain) {
    const auto begin = size_t(from * musicRate);
    const auto end = std::min(size_t(to * musicRate), x.size());
    for (const int note : notes) {
        for (int harmonic = 1; harmonic <= 4; ++harmonic) {
            const double hz = harmonic * 440 * std::exp2((note - 69) / 12.0);
            for (size_t i = begin; i < end; ++i) {
                const double t = double(i - begin) / musicRate;
                const double fade = std::min({1.0, t * 50, (to - from - t) * 50});
                x[i] += float(gain / harmonic * fade * std::sin(2 * std::numbers::pi * hz * t));
            }
        }
    }
}

// Bars of 4/4 at 120 BPM: clicks, and under each bar one of the chords Am Dm E Am. In A minor.
inline std::vector<float> clickPiece(double seconds) {
    std::vector<float> x = clickTrack(beatTimes(0, seconds, [](double) { return 120.0; }), 4, 0, seconds);
    for (int bar = 0; 2 * bar < seconds; ++bar) {
        static constexpr int roots[] = {57, 62, 64, 57};
        const int root = roots[bar % 4];
        addChord(x, 2 * bar, 2 * bar + 2, {root, root + (root == 64 ? 4 : 3), root + 7}, 0.05);
    }
    return x;
}

// Signed distances of the grid's times to the nearest true ones, from the first true time on, in order.
inline std::vector<double> errors(const std::vector<double>& times, const std::vector<double>& truth) {
    std::vector<double> out;
    for (const double t : times) {
        if (t < truth.front() - 0.03) { continue; }
        const auto distance = [t](double other) { return std::abs(t - other); };
        out.push_back(t - *std::ranges::min_element(truth, {}, distance));
    }
    return out;
}

}  // namespace brindlehum::test
