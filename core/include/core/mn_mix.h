// The render configuration as the audio thread sees it, and the matrix kernel that reads it.
#pragma once

#include <cstdint>

extern "C" {

// Immutable while it is published through a mn_slot.
struct mn_mix_config {
    int32_t in_channels;   // input planes that the matrix reads
    int32_t rows;          // output rows
    int32_t to_binaural;   // non-zero: the rows are virtual speakers of the binaural stage
    int32_t bin_left;      // device channel of the left ear
    int32_t bin_right;     // device channel of the right ear
    const float* matrix;   // rows x in_channels, row-major; may be null
    void* upmix;           // an upmix processor before the matrix; may be null
    int32_t upmix_offset;  // first input plane that feeds the upmix processor
};

// Adds inputs through the matrix into the outputs: out[r][i] += matrix[r][c] * (ramp ? ramp[i] : 1) * in[c][i],
// each step a fused multiply-add with the gain (g x ramp[i]) rounded first. It only adds: the caller clears.
// `inputs` has in_channels planes; of `outputs` (out_count planes) any may be null, which skips the row; rows
// beyond out_count are ignored; a gain of exactly 0 skips its input without reading it. Real-time safe.
void mn_mix_accumulate(const mn_mix_config* config, const float* const* inputs, int32_t frames, float* const* outputs,
                       int32_t out_count, const float* ramp) noexcept;

}  // extern "C"
