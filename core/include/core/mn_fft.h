// FFT of a power-of-two size in single precision, over FFTW: real, and complex in split form.
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

// The inverse transform of two real signals a and b at once, as one complex signal a + i b: a third of the time of two
// calls of mn_fft_inverse. The errors of either reach the other one too, some 140 dB below it.
struct mn_fft_pair;
// As mn_fft_create and mn_fft_destroy.
mn_fft_pair* mn_fft_pair_create(int32_t size) noexcept;
void mn_fft_pair_destroy(mn_fft_pair* fft) noexcept;
// a[n] + i b[n] = sum of (re[k] + i im[k]) e^(2 pi i k n / size), over all `size` bins, unscaled. With A and B the
// spectra of a and b up to the Nyquist frequency, re + i im is A + i B there, and conj(A) + i conj(B) at size - k. All
// four lists hold `size` values. Destroys re and im. Real-time safe.
void mn_fft_pair_inverse(const mn_fft_pair* fft, float* re, float* im, float* a, float* b) noexcept;

}  // extern "C"
