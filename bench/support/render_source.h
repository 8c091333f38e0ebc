// Input of the render benchmarks: a ring that is always full, full matrices, and speakers all round the listener.
#pragma once

#include <random>
#include <utility>
#include <vector>

#include "audio/speakers/speakers.h"
#include "core/mn_mix.h"
#include "core/mn_ring.h"

namespace brindlehum::bench {

inline std::vector<float> noise(int frames, unsigned seed) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<float> uniform(-0.5F, 0.5F);
    auto out = std::vector<float>(size_t(frames));
    for (float& x : out) { x = uniform(random); }
    return out;
}

class RenderSource {
public:
    RenderSource(int channels, int frames) : ring_(mn_ring_create(channels, frames)), positions_(size_t(frames)) {
        for (int c = 0; c < channels; ++c) { samples_.push_back(noise(frames, unsigned(c) + 1)); }
        for (auto& plane : samples_) { planes_.push_back(plane.data()); }
        fill();
    }
    ~RenderSource() { mn_ring_destroy(ring_); }
    RenderSource(const RenderSource&) = delete;
    RenderSource& operator=(const RenderSource&) = delete;

    mn_ring* ring() { return ring_; }
    void fill() { mn_ring_write(ring_, planes_.data(), positions_.data(), mn_ring_write_space(ring_)); }

private:
    mn_ring* ring_;
    std::vector<std::vector<float>> samples_;
    std::vector<const float*> planes_;
    std::vector<double> positions_;
};

// A configuration without a zero gain.
struct DenseConfig {
    DenseConfig(int inputs, int rows) : matrix(size_t(inputs) * size_t(rows), 0.1F) {
        record = {inputs, rows, 0, 0, 1, matrix.data(), nullptr, 0};
    }
    void makeDiagonal() {
        for (size_t i = 0; i < matrix.size(); ++i) {
            matrix[i] = i / size_t(record.in_channels) == i % size_t(record.in_channels) ? 1.0F : 0.0F;
        }
    }
    std::vector<float> matrix;
    mn_mix_config record;
};

inline std::vector<Direction> directionsAround(int count, double turn) {
    std::vector<Direction> directions;
    for (int i = 0; i < count; ++i) {
        const double az = i * 360.0 / count + turn;
        directions.push_back({az > 180 ? az - 360 : az, i % 3 == 2 ? 40.0 : 0.0});
    }
    return directions;
}

}  // namespace brindlehum::bench
