// The same work by others: libebur128 and aubio as libraries, on one thread.
#pragma once

#include <aubio/aubio.h>
#include <ebur128.h>

#include <algorithm>
#include <memory>
#include <vector>

#include "analysis/piece.h"

namespace brindlehum::bench {

inline std::vector<float> interleave(const Planes& planes) {
    std::vector<float> out;
    out.reserve(planes.size() * planes[0].size());
    for (size_t i = 0; i < planes[0].size(); ++i) {
        for (const auto& plane : planes) { out.push_back(plane[i]); }
    }
    return out;
}

// LUFS, the maxima taken every 100 ms, and the linear true peak.
struct Ebur128Values {
    double integrated = 0, momentaryMax = -100, shortTermMax = -100, truePeak = 0;
};

inline Ebur128Values runEbur128(const std::vector<float>& interleaved, unsigned channels, unsigned long rate) {
    ebur128_state* state = ebur128_init(
        channels, rate,
        EBUR128_MODE_I | EBUR128_MODE_M | EBUR128_MODE_S | EBUR128_MODE_SAMPLE_PEAK | EBUR128_MODE_TRUE_PEAK);
    const size_t block = rate / 10;
    Ebur128Values out;
    double value = 0;
    for (size_t at = 0; at + block <= interleaved.size() / channels; at += block) {
        ebur128_add_frames_float(state, interleaved.data() + at * channels, block);
        ebur128_loudness_momentary(state, &value);
        out.momentaryMax = std::max(out.momentaryMax, value);
        ebur128_loudness_shortterm(state, &value);
        out.shortTermMax = std::max(out.shortTermMax, value);
    }
    ebur128_loudness_global(state, &out.integrated);
    for (unsigned c = 0; c < channels; ++c) {
        ebur128_true_peak(state, c, &value);
        out.truePeak = std::max(out.truePeak, value);
    }
    ebur128_destroy(&state);
    return out;
}

// Beats of a mono signal at aubio's own defaults.
inline int runAubio(const std::vector<float>& mono, unsigned rate) {
    constexpr unsigned hop = 512;
    aubio_tempo_t* tempo = new_aubio_tempo("default", 1024, hop, rate);
    fvec_t* in = new_fvec(hop);
    fvec_t* out = new_fvec(1);
    int beats = 0;
    for (size_t at = 0; at + hop <= mono.size(); at += hop) {
        std::copy_n(mono.data() + at, hop, in->data);
        aubio_tempo_do(tempo, in, out);
        beats += out->data[0] != 0 ? 1 : 0;
    }
    del_fvec(out);
    del_fvec(in);
    del_aubio_tempo(tempo);
    return beats;
}

}  // namespace brindlehum::bench
