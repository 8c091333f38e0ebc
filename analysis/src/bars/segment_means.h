// SegmentMeans: means over stretches of time of what HarmonyFrames hold, at one cost for any length.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <span>
#include <vector>

#include "analysis/spectrum/harmony_frames.h"

namespace brindlehum::bars {

template <size_t N>
class SegmentMeans {
public:
    using Row = std::array<double, N>;
    struct Mean {
        Row row{};
        bool known = false;  // at least half a frame was there
    };

    // `valueOf(frame)` is the row of a frame.
    template <class ValueOf>
    SegmentMeans(size_t frames, ValueOf valueOf) : sums_(frames + 1) {
        for (size_t f = 0; f < frames; ++f) {
            const auto row = valueOf(f);
            for (size_t i = 0; i < N; ++i) { sums_[f + 1][i] = sums_[f][i] + double(row[i]); }
        }
    }

    // Frames count by the share of their hop, around their centre, that lies in from <= t < to (seconds).
    Mean mean(double from, double to) const {
        const double a = position(from);
        const double b = position(to);
        const double length = std::max(b - a, 1e-6);
        const Row before = sumUpTo(a);
        Mean out{sumUpTo(b), b - a > 0.5};
        for (size_t i = 0; i < N; ++i) { out.row[i] = (out.row[i] - before[i]) / length; }
        return out;
    }

private:
    double position(double t) const {
        return std::clamp(HarmonyFrames::indexAt(t) + 0.5, 0.0, double(sums_.size() - 1));
    }
    Row sumUpTo(double p) const {
        const size_t i = size_t(p);
        if (i + 1 >= sums_.size()) { return sums_.back(); }
        const double share = p - double(i);
        Row out;
        for (size_t c = 0; c < N; ++c) { out[c] = sums_[i][c] + share * (sums_[i + 1][c] - sums_[i][c]); }
        return out;
    }

    std::vector<Row> sums_;  // of the frames before each
};

}  // namespace brindlehum::bars
