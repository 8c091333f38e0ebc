// GivenBars: what a user knows about the bars of a piece; it overrides the analysis.
#pragma once

#include <optional>

namespace brindlehum {

struct GivenBars {
    std::optional<double> bpm;                      // above 0
    std::optional<int> beatsPerBar;                 // 1 or more
    std::optional<double> downbeat = std::nullopt;  // seconds: a bar starts here

    bool any() const { return bpm || beatsPerBar || downbeat; }
    bool operator==(const GivenBars&) const = default;
};

// What users may enter.
namespace GivenBarsRange {
inline constexpr double slowestBpm = 20;
inline constexpr double fastestBpm = 400;
inline constexpr int mostBeatsPerBar = 16;
inline constexpr double latestDownbeat = 24 * 3600;  // seconds
}  // namespace GivenBarsRange

}  // namespace brindlehum
