// Meter: finds the bar length whose downbeats stand out most.
#include <algorithm>
#include <array>
#include <cmath>

#include "analysis/tempo/onset_time.h"
#include "analysis/tempo/tempo_analyzer.h"

namespace brindlehum::TempoAnalyzer {
namespace {

struct Grouping {
    int group = 0;
    int offset = 0;
    double contrast = -1;
    double weighted() const { return contrast * (group == 4 ? 1.08 : 1.0); }
};

Grouping bestOffset(std::span<const double> accents, double spread, int group) {
    Grouping best{group};
    for (int offset = 0; offset < group; ++offset) {
        double on = 0;
        size_t count = 0;
        for (auto i = size_t(offset); i < accents.size(); i += size_t(group), ++count) { on += accents[i]; }
        double off = 0;
        for (size_t i = 0; i < accents.size(); ++i) {
            if (i % size_t(group) != size_t(offset)) { off += accents[i]; }
        }
        const double contrast =
            (on / double(std::max<size_t>(count, 1)) - off / double(std::max<size_t>(accents.size() - count, 1))) /
            spread;
        if (contrast > best.contrast) { best = {group, offset, contrast}; }
    }
    return best;
}

double spreadOf(std::span<const double> values) {
    if (values.empty()) { return 1e-9; }
    double sum = 0;
    for (const double value : values) { sum += value; }
    const double mean = sum / double(values.size());
    double squares = 0;
    for (const double value : values) { squares += (value - mean) * (value - mean); }
    return std::sqrt(squares / double(values.size())) + 1e-9;
}

}  // namespace

std::vector<double> accents(std::span<const double> beats, std::span<const float> low, std::span<const float> full) {
    std::vector<double> out;
    const auto count = int64_t(std::min(low.size(), full.size()));
    if (count == 0) { return out; }
    for (const double beat : beats) {
        const auto frame = size_t(std::clamp(beat * OnsetTime::frameRate, 0.0, double(count - 1)));
        out.push_back(0.65 * double(low[frame]) + 0.35 * double(full[frame]));
    }
    return out;
}

TempoResult::Meter meter(std::span<const double> beats, std::span<const float> low, std::span<const float> full) {
    static constexpr std::array<const char*, 5> labels = {"", "", "2/4 or cut time", "3/4", "4/4"};
    const std::vector<double> strength = accents(beats, low, full);
    const double spread = spreadOf(strength);
    std::optional<Grouping> best;
    for (const int group : {2, 3, 4}) {
        if (strength.size() < size_t(3 * group)) { continue; }
        const Grouping grouping = bestOffset(strength, spread, group);
        if (!best || grouping.weighted() > best->weighted()) { best = grouping; }
    }
    if (!best) { return {}; }
    TempoResult::Meter out;
    out.label = labels[size_t(best->group)];
    out.group = best->group;
    out.contrast = std::round(best->contrast * 100) / 100;
    if (best->contrast > 0.45) { out.confidence = best->contrast > 0.9 ? "strong" : "fair"; }
    out.downbeatOffset = best->offset;
    return out;
}

}  // namespace brindlehum::TempoAnalyzer
