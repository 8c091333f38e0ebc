// Real FFT of a power-of-two size in single precision, over FFTW.
//
// Create and destroy belong to the control side, any thread: one lock guards FFTW's planner for the whole process, and
// no other code may call that planner. A transform holds no buffers and never changes after it is made, so forward and
// inverse are real-time safe, and several threads may call them at once on their own data.
//
// A spectrum is size / 2 + 1 bins from 0 Hz to the Nyquist frequency. Each bin is a real and an imaginary part side by
// side, the memory layout of std::complex<float>, so a spectrum takes size + 2 floats. The imaginary parts of the first
// and the last bin are 0. Samples and spectra are aligned to 64 bytes and never overlap.
#pragma once

#include <cstdint>

extern "C" {

struct mn_fft;

// `size` samples, a power of two from 4 to 2^30. Null for any other size, and when there is no memory or no plan. The
// first transform of a size takes about a millisecond to plan; the process keeps its plan. Control side.
mn_fft* mn_fft_create(int32_t size) noexcept;
// Null is accepted. Control side, after the last transform.
void mn_fft_destroy(mn_fft* fft) noexcept;

// Samples of a transform. Any thread.
int32_t mn_fft_size(const mn_fft* fft) noexcept;
// size / 2 + 1. Any thread.
int32_t mn_fft_bins(const mn_fft* fft) noexcept;

// spectrum[k] = sum of time[n] e^(-2 pi i k n / size), unscaled. Leaves `time` unchanged. Real-time safe.
void mn_fft_forward(const mn_fft* fft, const float* time, float* spectrum) noexcept;
// The inverse, unscaled: forward and inverse together multiply by `size`. Destroys `spectrum`. Real-time safe.
void mn_fft_inverse(const mn_fft* fft, float* spectrum, float* time) noexcept;

}  // extern "C"
