// Structure: describes a piece of music bar by bar, and derives pins, loops and exits from that. Stateless, any thread.
//
// Samples are mono at `sr` Hz; `bounds` are bar lines in seconds (MusicGrid::boundaries()). Bar i spans bounds[i] to
// bounds[i + 1].
#pragma once

#include <array>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/grid/music_grid.h"
#include "analysis/signal/working_signal.h"
#include "analysis/spectrum/spectral_frames.h"
#include "analysis/structure/pins.h"

namespace brindlehum {

struct BarProfile {
    std::vector<float> rms;         // one per bar
    std::vector<float> lineLevels;  // level right before each boundary
    float activeLevel = 0;          // level of the music while it plays
    int musicStartBar = 0;          // the first bar of music
    int musicEndBar = 0;            // one past the last
};

// How alike two bars are, at most 1; symmetric, so that one value serves both orders of a pair.
struct SimilarityMatrix {
    SimilarityMatrix() = default;
    explicit SimilarityMatrix(int bars) : size(bars), values(index(0, size_t(bars))) {}

    int size = 0;
    std::vector<double> values;  // of the pairs i <= j, in columns of j + 1
    double at(int i, int j) const { return values[indexOf(i, j)]; }
    void set(int i, int j, double value) { values[indexOf(i, j)] = value; }
    bool contains(int i, int j) const { return i >= 0 && j >= 0 && i < size && j < size; }

private:
    static size_t index(size_t i, size_t j) { return j * (j + 1) / 2 + i; }
    static size_t indexOf(int i, int j) { return i <= j ? index(size_t(i), size_t(j)) : index(size_t(j), size_t(i)); }
};

namespace Structure {

struct BarFeature {
    SpectralFrames::Chroma chroma{};  // unit length, or zeros
    SpectralFrames::Bands bands{};    // compressed; unit length, or zeros
    float db = 0;
};

}  // namespace Structure

struct StructureResult {
    BarProfile profile;
    Pins pins;
    std::optional<int> fadeStart;  // the boundary from which the piece fades out while it plays on
    SimilarityMatrix similarity;
    std::vector<Structure::BarFeature> beatFeatures;  // one per beat of the grid, up to the next one
    std::vector<double> novelty;                      // one per boundary, 0 to 1
    std::vector<LoopCandidate> loopCandidates;
    std::vector<LoopCandidate> exitCandidates;
    std::vector<std::string> notes;  // remarks for the user, in the order they were made
};

namespace Structure {

// Bar counts that are phrase lengths.
inline constexpr std::array<int, 7> phraseBars = {8, 12, 16, 24, 32, 48, 64};

// Runs all functions below on one piece. `name` is the file's name, which may say that the file is a loop.
StructureResult analyze(const SignalView& mono, double sr, const MusicGrid& grid, const SpectralFrames& frames,
                        std::string_view name);

BarProfile profile(const SignalView& mono, double sr, std::span<const double> bounds);

std::vector<BarFeature> barFeatures(const SpectralFrames& frames, std::span<const double> bounds);
// How alike two bars, or two beats, sound: at most 1.
double alike(const BarFeature& a, const BarFeature& b);
SimilarityMatrix similarity(std::span<const BarFeature> features);

// How much the music changes at each boundary; the largest value is 1. Uses a checkerboard kernel of `half` bars on
// either side (Foote, "Automatic audio segmentation using a measure of audio novelty", 2000). One entry more than bars.
std::vector<double> novelty(const SimilarityMatrix& similarity, int half);

struct Cooked {
    std::optional<double> bodyEntry;  // seconds: a quiet head ends here
    std::optional<double> tailStart;  // seconds: the level fades for good from here
};
// Studies the level alone, without bars.
Cooked cook(const SignalView& mono, double sr);

// Sign changes per sample of x[from ..< to], clamped to the signal; zero counts as positive.
float windowZcr(const SignalView& x, int64_t from, int64_t to);

// Places to end a loop that starts at the boundary `loopStart`, best first.
std::vector<LoopCandidate> loopCandidates(const SignalView& mono, double sr, std::span<const double> bounds,
                                          const BarProfile& profile, int loopStart);
// Places to leave the piece, best first.
std::vector<LoopCandidate> exitCandidates(const SignalView& mono, double sr, std::span<const double> bounds,
                                          const BarProfile& profile, int beatsPerBar);

}  // namespace Structure
}  // namespace brindlehum
