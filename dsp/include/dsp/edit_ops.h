// EditOps: pure operations of the sound editor on audio in memory.
//
// Channels are equally long lists of samples at the rate `sr` in Hz. Ranges are half-open, start ..< end in frames,
// with 0 <= start <= end <= length; anything else is undefined. Arguments are never changed. Callable on any thread;
// every function allocates.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <random>
#include <span>
#include <vector>

#include "dsp/sound.h"

namespace brindlehum::EditOps {

using Channels = std::vector<std::vector<float>>;

// Cuts of a document. They share its samples: a cut costs a look at its pieces, whatever its length.
Sound slice(const Sound& sound, int64_t start, int64_t end);
// The sound without the range.
Sound splice(const Sound& sound, int64_t start, int64_t end);
// Inserts a clip before frame `at`. Channels that the clip lacks get silence as long as the clip; a clip without
// channels changes nothing.
Sound insert(const Sound& sound, int64_t at, const Sound& clip);
Sound silence(const Sound& sound, int64_t start, int64_t end);
// Replaces the range by a sound with at least one channel, of any length; its first channel serves for missing ones.
Sound replaceRegion(const Sound& sound, int64_t start, int64_t end, const Sound& with);
// Every channel becomes the mean of all channels in the range. Copies the range.
Sound monoFold(const Sound& sound, int64_t start, int64_t end);
// Swaps the first two channels in the range; a sound with fewer than two channels stays unchanged.
Sound swapLR(const Sound& sound, int64_t start, int64_t end);

Channels slice(const Channels& channels, int64_t start, int64_t end);

// Second-order filter; the coefficients are divided by a0.
struct Biquad {
    double b0 = 1, b1 = 0, b2 = 0, a1 = 0, a2 = 0;
    // Direct form I, starting from zero state, in double precision.
    std::vector<float> run(std::span<const float> x) const;
};

// Butterworth filters of second order, 12 dB per octave (bilinear transform). At half the rate and above, the low-pass
// passes everything and the high-pass nothing.
Biquad highPass(double hz, double sr);
Biquad lowPass(double hz, double sr);
Sound hiPass200(const Sound& sound, double sr);  // copies one channel at a time

// The linear convolution, n + m - 1 samples at unity gain; empty when either side is empty or the result is too long
// for a transform. Within -120 dB of the direct sum. Costs O((n + m) log min(n, m)).
// `progress` gets the share that is done, 0 to 1, and returns false to stop: the result is then empty.
using Progress = std::function<bool(double share)>;
std::vector<float> convolve(std::span<const float> signal, std::span<const float> response,
                            const Progress& progress = {});

// The random source for noise and grains: seeded by the system, so that no two runs are alike, or by the caller.
using RandomEngine = std::mt19937;
RandomEngine systemSeeded();

// A synthetic hall of trunc(sr x seconds) samples: noise that decays with the time constant 0.35 x seconds, and a dense
// burst over its first 80 ms.
std::vector<float> hallIR(double sr, double seconds, RandomEngine& random);
std::vector<float> hallIR(double sr, double seconds);

// The macros, each with the text that explains it to the user.

inline constexpr const char* topAndTailsDescription = "50 ms fade-in at the head, 1 s fade-out at the tail";
// Fades the whole document: a sine fade in, a cosine fade out. In a short document the fades overlap.
Channels topAndTails(const Channels& channels, double sr);
Sound topAndTails(const Sound& sound, double sr);  // shares what lies between the fades

inline constexpr const char* verbTailDescription = "Adds 4 s and rings the selection through an 8 s hall at 30% wet";
// The selection and its tail, 4 seconds longer than the range: 0.7 dry plus 0.3 through one hall for all channels.
// Progress as for `convolve`.
Channels verbTail(const Channels& channels, double sr, int64_t start, int64_t end, RandomEngine& random,
                  const Progress& progress = {});
Channels verbTail(const Channels& channels, double sr, int64_t start, int64_t end, const Progress& progress = {});

inline constexpr const char* seamlessLoopDescription =
    "Loops the selection (or the pinned loop) and carries the natural ring-out over its head. 8 ms splice guard, never "
    "a long crossfade.";
struct SeamlessLoop {
    Channels channels;
    int64_t guard = 0;  // frames of the splice guard
    int64_t carry = 0;  // frames after the range that are folded over its head
};
// A loop of exactly the range's length. The guard joins what it cuts: over the last 8 ms the end of the range fades out
// and the source before its start fades in, so that at the wrap the source runs on into the next round. The fades keep
// the power, for sounds alike and for strangers, and change no level. With `carryTail`, up to 3 seconds of the sound
// after the range are added to its head, as they would ring on after the last round; the end then doesn't fade out, and
// peaks above 0.999 are scaled down to it. A range from the start of the source has nothing before it (fewer than 10
// frames): its rounds overlap at equal power, which lifts the level by up to 3 dB at the wrap, and its peaks are
// scaled, too. None for a range of fewer than 20 frames, a rate below 1250 Hz, or no channels.
std::optional<SeamlessLoop> seamlessLoop(const Channels& channels, double sr, int64_t start, int64_t end,
                                         bool carryTail);
// The same of a document; copies the range and what is read around it.
std::optional<SeamlessLoop> seamlessLoop(const Sound& sound, double sr, int64_t start, int64_t end, bool carryTail);

inline constexpr const char* textureDescription = "8× granular stretch, huge reverb, dark filter, long fades";
// A long, dark wash made from the range: eight times as long, at most 90 seconds, every channel at a peak of -6 dBFS.
// Progress as for `convolve`.
Channels texture(const Channels& channels, double sr, int64_t start, int64_t end, RandomEngine& random,
                 const Progress& progress = {});
Channels texture(const Channels& channels, double sr, int64_t start, int64_t end, const Progress& progress = {});

}  // namespace brindlehum::EditOps
