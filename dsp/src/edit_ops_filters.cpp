// Second-order filters and the bank of feedback delays.
#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

#include "edit_ops_detail.h"

namespace brindlehum::EditOps {
namespace {

// Two-pole filters by the bilinear transform; 1.4142 is the square root of two of the Butterworth shape.
struct Design {
    Design(double hz, double sr)
        : cosine(std::cos(2 * std::numbers::pi * hz / sr)),
          alpha(std::sin(2 * std::numbers::pi * hz / sr) / 1.4142),
          a0(1 + alpha) {}
    Biquad with(double b0, double b1) const { return {b0 / a0, b1 / a0, b0 / a0, -2 * cosine / a0, (1 - alpha) / a0}; }
    double cosine, alpha, a0;
};

}  // namespace

std::vector<float> Biquad::run(std::span<const float> x) const {
    std::vector<float> out(x.size());
    double x1 = 0, x2 = 0, y1 = 0, y2 = 0;
    for (size_t i = 0; i < x.size(); ++i) {
        const double now = double(x[i]);
        const double y = b0 * now + b1 * x1 + b2 * x2 - a1 * y1 - a2 * y2;
        x2 = std::exchange(x1, now);
        y2 = std::exchange(y1, y);
        out[i] = float(y);
    }
    return out;
}

Biquad highPass(double hz, double sr) {
    if (hz >= sr / 2) { return {0, 0, 0, 0, 0}; }
    const Design design(hz, sr);
    return design.with((1 + design.cosine) / 2, -(1 + design.cosine));
}

Biquad lowPass(double hz, double sr) {
    if (hz >= sr / 2) { return {}; }  // the whole band is below; the formula's poles would leave the unit circle
    const Design design(hz, sr);
    return design.with((1 - design.cosine) / 2, 1 - design.cosine);
}

Sound hiPass200(const Sound& sound, double sr) {
    const Biquad filter = highPass(200, sr);
    std::vector<Track> out;
    for (const Track& track : sound.tracks()) {
        std::vector<float> x(size_t(track.length()));
        track.read(0, x);
        out.emplace_back(filter.run(x));
    }
    return Sound(std::move(out));
}

void detail::feedbackDelay(std::vector<float>& channel, std::span<const double> delaysMs, double sr, float feedback,
                           float mix) {
    struct Line {
        std::vector<float> samples;
        size_t position = 0;
    };
    std::vector<Line> lines;
    for (const double ms : delaysMs) {
        lines.push_back({std::vector<float>(size_t(std::max(std::ceil(sr * ms / 1000), 1.0))), 0});
    }
    const float share = mix / float(lines.size());
    for (float& x : channel) {
        float sum = 0;
        for (Line& line : lines) {
            float& slot = line.samples[line.position];
            sum += slot;
            slot = x + feedback * slot;
            if (++line.position == line.samples.size()) { line.position = 0; }
        }
        x = (1 - mix) * x + share * sum;
    }
}

}  // namespace brindlehum::EditOps
