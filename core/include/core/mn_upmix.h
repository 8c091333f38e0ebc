// The upmix processor: splits stereo pairs into a direct and an ambient part, and spreads both over many outputs.
//
// A short-time Fourier transform of N samples with a hop of N / 4, windowed by the square root of a Hann window on both
// sides. In each bin the principal axis of a pair gives the pan angle, and the share of its energy gives how much is
// direct; the rest of both channels is ambience, so that direct part and ambience together always give the pair back.
// A plan says where each goes. Outputs are N samples late.
//
// Create, destroy and reset belong to the control side; process is real-time safe and runs on one thread at a time;
// set_plan may be called from another thread at any moment.
#pragma once

#include <cstdint>

extern "C" {

struct mn_upmix;

enum { mn_upmix_max_in = 16, mn_upmix_max_out = 24, mn_upmix_max_pairs = 8, mn_upmix_max_delay = 8192 };

// Where everything goes. P pairs, N outputs, K bins, S pan steps. Immutable while a processor may read it: from
// mn_upmix_set_plan until a hop after the plan was replaced. An absent list is a null pointer. A pair, route or send
// that names a channel that isn't there is skipped.
struct mn_upmix_plan {
    int32_t pairs;
    const int32_t* pair_in;  // 2 P: left and right input
    int32_t pan_steps;       // S; pairs are skipped below 2
    const float* direct;     // P x N x S: gain of the direct part at each pan step, from left to right
    const float* amb_l;      // P x N: gain of the left ambience
    const float* amb_r;      // P x N: gain of the right ambience
    const float* curve;      // N x K: magnitude of an output's ambience; absent when 1 everywhere
    const float* decor_re;   // N x K: unit factor of an output's ambience; absent when 1 everywhere
    const float* decor_im;
    const float* kappa;    // P: weight of the ambience in the split; absent when 1 for all
    int32_t exact;         // non-zero: both owners get what the fold-down of the other outputs leaves of the inputs
    const int32_t* own_l;  // P: output that owns the left input
    const int32_t* own_r;  // P: output that owns the right input
    const float* fold_l;   // P x N: share of an output in the fold-down to the left input
    const float* fold_r;   // P x N: the same for the right input
    int32_t routes;
    const int32_t* route_in;
    const int32_t* route_out;
    const float* route_gain;
    int32_t lfe_out;       // output of the bass send of the first pair; -1 for none
    float lfe_gain;        // linear
    const float* lfe_lp;   // K: magnitude of the bass send
    const float* main_hp;  // K: magnitude of all other outputs; absent when 1 everywhere
    const float* delay;    // N: samples, rounded and limited to 0 to mn_upmix_max_delay; absent when 0 for all
    // P, absent when 0 for all. Non-zero: the owners get the direct part by the bin's own cosine and sine, and `direct`
    // is read for the other outputs only. Ambience of gain 1 then gives the input back without an error of the table.
    const int32_t* home;
};

// 1 to 16 inputs, 1 to 24 outputs, N a power of two from 256 to 8192. Null otherwise, and when there is no memory.
mn_upmix* mn_upmix_create(int32_t in_channels, int32_t out_channels, int32_t size, double sample_rate) noexcept;
// Null is accepted. Leaves the plan alone.
void mn_upmix_destroy(mn_upmix* upmix) noexcept;

int32_t mn_upmix_bins(const mn_upmix* upmix) noexcept;
// Samples, N.
int32_t mn_upmix_latency(const mn_upmix* upmix) noexcept;
// Samples from an input to its last trace in an output, at most: two windows and the plan's longest delay. Real-time
// safe.
int32_t mn_upmix_tail(const mn_upmix* upmix) noexcept;
int32_t mn_upmix_in_channels(const mn_upmix* upmix) noexcept;
int32_t mn_upmix_out_channels(const mn_upmix* upmix) noexcept;

// Takes effect at the next hop, faded over N samples by the overlap; a changed delay fades over one hop. Null means
// silence. Any thread.
void mn_upmix_set_plan(mn_upmix* upmix, const mn_upmix_plan* plan) noexcept;
// Forgets all sound and takes up the plan's delays at once. Only while no other thread is in process.
void mn_upmix_reset(mn_upmix* upmix) noexcept;

// `frames` samples of each input to each output, any count. A null input is silence, a null output isn't written;
// either list may be null. Samples that aren't finite count as 0, so that one of them is over with its window.
// Real-time safe; the same bits for any division into calls.
void mn_upmix_process(mn_upmix* upmix, const float* const* inputs, int32_t frames, float* const* outputs) noexcept;

// For a picture of what a plan does. While the measuring is on (not at first), one hop in six is measured; a hop that
// is costs about half as much again. Any thread.
void mn_upmix_measure(mn_upmix* upmix, int32_t on) noexcept;
// The greatest RMS level, 1 at full scale, that a measured hop gave this output of the direct parts, or of the
// ambience, since the last take. Routes and the bass send count as direct. Before delays and `main_hp`. Control side,
// one thread.
float mn_upmix_take_direct(mn_upmix* upmix, int32_t output) noexcept;
float mn_upmix_take_ambience(mn_upmix* upmix, int32_t output) noexcept;

}  // extern "C"
