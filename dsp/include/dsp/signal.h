// Signal: basic functions for every music analysis. Samples are linear, full scale 1; stateless, callable on any
// thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace brindlehum::Signal {

// Working rate of the music analysis, Hz.
inline constexpr double analysisRate = 22050;

// The mean of the channels, cut to the length of the shortest. Empty without channels.
std::vector<float> mono(const std::vector<std::vector<float>>& channels);
// The same of `frames` frames of 1 channel or more, into `out`.
void mono(const float* const* planes, int channels, size_t frames, float* out);

// Sum of squares in double precision.
double energy(std::span<const float> x);

// Root mean square of x[from ..< to], clamped to the signal; 0 for an empty range.
float rms(std::span<const float> x, int64_t from, int64_t to);

// Hann window in its symmetric form, 0.5 - 0.5 cos(2 pi i / (n - 1)); [1] for n below 2.
std::vector<float> hanning(int n);

// r[k] = sum of x[i] x[i + k], not normalised, for max(min(count, maxLag), 1) lags from 0. Summed directly in double
// precision: at the lags of a tempo search that costs under 1 ms per minute of music. Flat stretches stay flat, where
// the rounding of a transform would raise false peaks.
std::vector<float> autocorrelation(std::span<const float> x, int64_t maxLag);

// Band-limited conversion with its delay compensated: sample 0 stays at time 0. Returns the input unchanged when the
// rates lie within 0.5 Hz of each other or no converter can be made for them.
std::vector<float> resample(std::vector<float> x, double from, double to);

// Returns `x` itself when every sample is a number of magnitude up to `usableLimit`; otherwise a copy in `store` with
// all other samples silenced (NaN, infinities, garbage beyond +240 dBFS whose square would leave the range of a float).
inline constexpr float usableLimit = 1e12F;
bool isUsable(std::span<const float> x);
std::span<const float> usable(std::span<const float> x, std::vector<float>& store);

}  // namespace brindlehum::Signal
