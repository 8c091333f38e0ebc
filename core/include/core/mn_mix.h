// The render configuration as the audio thread sees it, and the matrix kernel that reads it.
#pragma once

#include <cstdint>

extern "C" {

// An upmix processor, which makes more channels from a block before the matrix.
struct mn_upmix;

// Flat and immutable while it is published through a mn_slot. Without an upmix processor the matrix reads the source's
// channels; with one it reads the processor's outputs, and in_channels counts those.
struct mn_mix_config {
    int32_t in_channels;   // input planes that the matrix reads
    int32_t rows;          // output rows
    int32_t to_binaural;   // non-zero: the rows are virtual speakers of the binaural stage
    int32_t bin_left;      // device channel of the left ear, from 0
    int32_t bin_right;     // device channel of the right ear, from 0
    const float* matrix;   // rows x in_channels linear gains, row-major; null for a silent configuration
    mn_upmix* upmix;       // runs before the matrix; may be null
    int32_t upmix_offset;  // first source plane that feeds the upmix processor
};

// Adds inputs through the matrix into the outputs: out[r][i] += matrix[r][c] * (ramp ? ramp[i] : 1) * in[c][i], each
// step a fused multiply-add with the gain (g x ramp[i]) rounded first. It only adds, so the caller clears the outputs
// first. `inputs` has in_channels planes of `frames` samples. `outputs` has out_count such planes; a null one skips its
// row. `ramp` has `frames` gains or is null. Rows beyond out_count are ignored; a gain of exactly 0 skips its input
// without reading it. Real-time safe, on any thread.
void mn_mix_accumulate(const mn_mix_config* config, const float* const* inputs, int32_t frames, float* const* outputs,
                       int32_t out_count, const float* ramp) noexcept;

}  // extern "C"
