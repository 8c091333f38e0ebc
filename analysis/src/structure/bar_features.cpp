// Compares bars by their sound: features, similarity and novelty.
#include <algorithm>
#include <cmath>

#include "analysis/structure/structure.h"

namespace brindlehum::Structure {
namespace {

template <class Row>
void scaleToUnit(Row& row) {
    double squares = 0;
    for (const float value : row) { squares += double(value) * double(value); }
    const double norm = std::sqrt(squares);
    if (!(norm > 1e-9)) { return; }
    for (float& value : row) { value = float(double(value) / norm); }
}

template <class Row>
double dot(const Row& a, const Row& b) {
    double sum = 0;
    for (size_t i = 0; i < a.size(); ++i) { sum += double(a[i]) * double(b[i]); }
    return sum;
}

}  // namespace

double alike(const BarFeature& a, const BarFeature& b) {
    const double level = std::max(0.0, 1 - std::abs(double(a.db) - double(b.db)) / 12);
    return 0.6 * dot(a.chroma, b.chroma) + 0.25 * dot(a.bands, b.bands) + 0.15 * level;
}

std::vector<BarFeature> barFeatures(const SpectralFrames& frames, std::span<const double> bounds) {
    std::vector<BarFeature> out;
    for (size_t i = 0; i + 1 < bounds.size(); ++i) {
        BarFeature bar;
        bar.chroma = SpectralFrames::average(frames.chroma, bounds[i], bounds[i + 1]);
        scaleToUnit(bar.chroma);
        bar.bands = SpectralFrames::average(frames.bands, bounds[i], bounds[i + 1]);
        for (float& band : bar.bands) { band = std::log1p(band); }
        scaleToUnit(bar.bands);
        const float level = SpectralFrames::average(frames.rms, bounds[i], bounds[i + 1]);
        bar.db = float(20 * std::log10(std::max(double(level), 1e-6)));
        out.push_back(bar);
    }
    return out;
}

SimilarityMatrix similarity(std::span<const BarFeature> features) {
    SimilarityMatrix out(int(features.size()));
    for (int j = 0; j < out.size; ++j) {
        for (int i = 0; i <= j; ++i) { out.set(i, j, alike(features[size_t(i)], features[size_t(j)])); }
    }
    return out;
}

std::vector<double> novelty(const SimilarityMatrix& similarity, int half) {
    const int n = similarity.size;
    std::vector<double> out(size_t(n) + 1, 0.0);
    if (n < 3) { return out; }
    const auto weight = [half](int x) {
        const double distance = (x + 0.5) / (0.6 * half);
        return std::exp(-0.5 * distance * distance);
    };
    for (int i = 1; i < n; ++i) {
        double sum = 0;
        double norm = 0;
        for (int a = std::max(-half, -i); a < std::min(half, n - i); ++a) {
            for (int b = std::max(-half, -i); b < std::min(half, n - i); ++b) {
                const double w = weight(a) * weight(b);
                sum += ((a < 0) == (b < 0) ? w : -w) * similarity.at(i + a, i + b);
                norm += w;
            }
        }
        out[size_t(i)] = norm > 0 ? std::max(0.0, sum / norm) : 0;
    }
    const double largest = *std::ranges::max_element(out);
    if (largest > 0) {
        for (double& value : out) { value /= largest; }
    }
    return out;
}

}  // namespace brindlehum::Structure
