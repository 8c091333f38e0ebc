// MusicGrid: bar lines from downbeats.
#include "analysis/grid/music_grid.h"

namespace brindlehum {

std::vector<double> MusicGrid::boundaries() const {
    std::vector<double> out = downbeats;
    if (!out.empty() && duration - out.back() > 0.001) { out.push_back(duration); }
    return out;
}

}  // namespace brindlehum
