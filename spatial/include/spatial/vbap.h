// VBAP: vector base amplitude panning over the triangulated hull of a speaker set (Pulkki 1997).
#pragma once

#include <array>
#include <optional>
#include <vector>

#include "audio/speakers/speakers.h"

namespace brindlehum {

using Vec3 = std::array<double, 3>;

// Built from directions. Always adds a virtual bottom point, and a virtual top point when no speaker is above 30
// degrees of elevation. Pure; O(n^4) on at most a few dozen speakers.
struct VBAP {
    struct Triangle {
        std::array<int, 3> points;
        std::array<Vec3, 3> inverse;  // rows of the inverse of the matrix whose columns are the three points
    };
    int speakers = 0;
    std::optional<int> top;
    int bottom = 0;
    std::vector<Vec3> points;
    std::vector<Triangle> triangles;

    explicit VBAP(const std::vector<Direction>& directions);
    // One gain per real speaker, never negative. The virtual top's share is spread as g / sqrt(n), the bottom's is
    // dropped. For a direction outside every triangle the nearest speaker gets 1.
    std::vector<double> gains(const Vec3& v) const;
};

}  // namespace brindlehum
