// HandMade: the planner's input for a piece in bars of two seconds, with similarities and pins set by the test.
#pragma once

#include <algorithm>
#include <functional>

#include "edits/temp_edit_planner.h"

namespace brindlehum::test {

struct HandMade {
    // `bars` bars of 4/4 at 120 BPM from 0 on, the last bar line at the end of the file; no two bars alike.
    explicit HandMade(int bars) : totalFrames(int64_t(bars) * 2 * 48000) {
        grid.bpm = 120;
        grid.duration = 2.0 * bars;
        for (int i = 0; i < bars; ++i) { grid.downbeats.push_back(2.0 * i); }
        alike([](int, int) { return 0.1; });
        auto& pins = structure.pins;
        pins.endingStart = pins.musicEnd = pins.loopEnd = pins.finalHit = bars;
        options.extended.reset();
        options.targets.clear();
    }
    // The similarity of two different bars; a bar is like itself by 1.
    void alike(const std::function<double(int, int)>& similarity) {
        const int size = int(grid.downbeats.size());
        structure.similarity = SimilarityMatrix(size);
        for (int i = 0; i < size; ++i) {
            for (int j = i; j < size; ++j) { structure.similarity.set(i, j, i == j ? 1 : similarity(i, j)); }
        }
    }
    std::vector<EditPlan> plans() const { return TempEditPlanner::plans(grid, structure, 48000, totalFrames, options); }
    // The plan of that name, or an empty one.
    EditPlan plan(const std::string& name) const {
        for (const auto& each : plans()) {
            if (each.name == name) { return each; }
        }
        return {};
    }

    MusicGrid grid;
    StructureResult structure;
    int64_t totalFrames;
    TempEditOptions options;
};

}  // namespace brindlehum::test
