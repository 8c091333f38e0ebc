// RmsTrack: RMS of overlapping windows of two hops, the fine time bases of the grid.
#pragma once

#include <cmath>
#include <span>
#include <utility>
#include <vector>

#include "dsp/signal.h"
#include "signal/frame_slicer.h"

namespace brindlehum {

// Takes usable samples in blocks. Each hop is squared only once.
class RmsTrack {
public:
    explicit RmsTrack(int hop) : hop_(hop), slicer_(hop, hop) {}

    void push(std::span<const float> block) {
        slicer_.push(block, [this](const float* x) {
            const double energy = Signal::energy({x, size_t(hop_)});
            if (before_ >= 0) { track_.push_back(float(std::sqrt((before_ + energy) / double(2 * hop_)))); }
            before_ = energy;
        });
    }
    // rms[i] is over x[i hop ..< i hop + 2 hop], for all windows that end at least a hop before the signal does.
    std::vector<float> finish() {
        if (!track_.empty()) { track_.pop_back(); }
        return std::move(track_);
    }

private:
    int hop_;
    FrameSlicer slicer_;
    double before_ = -1;  // the energy of the last hop; none yet
    std::vector<float> track_;
};

// The same of a whole signal.
inline std::vector<float> rmsTrack(std::span<const float> x, int hop) {
    RmsTrack track(hop);
    track.push(x);
    return track.finish();
}

}  // namespace brindlehum
