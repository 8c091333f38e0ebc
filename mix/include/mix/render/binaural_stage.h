// BinauralStage: 32 virtual sources around a listener, rendered to two ears inside the render callback.
#pragma once

#include <array>
#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "audio/speakers/speakers.h"
#include "core/mn_cells.h"
#include "dsp/partitioned_convolver.h"
#include "mix/render/hrtf_set.h"

namespace brindlehum {

class BinauralStage {
public:
    static constexpr int sources = 32;
    static constexpr int partition = 256;  // frames

    // Control side. At first every source is straight ahead and the input is silent.
    explicit BinauralStage(std::shared_ptr<const HRTFSet> hrtf);
    ~BinauralStage();

    // Places the first directions.size() sources (degrees), faded over the next block; all others stay. Returns the
    // replaced set, which the caller must keep until the render side has moved on (see keepFor). Control side; costs
    // filter look-ups, and transforms for new directions.
    struct FilterSet;
    std::shared_ptr<const FilterSet> setDirections(const std::vector<Direction>& directions);

    // Frames that the stage keeps sounding after its input has fallen silent.
    int tailFrames() const { return tailFrames_; }

    // Render thread, or the control side while nothing renders.
    void reset() noexcept;
    // Renders `frames` (up to 4096) frames of the 32 `lanes` to the ears: overwrites `left` and `right`. No
    // latency. Render thread.
    void process(const float* const* lanes, int frames, float* left, float* right) noexcept;

private:
    static constexpr size_t maxKnown = 512;  // directions whose filters are kept, some 10 KiB each
    std::shared_ptr<const ConvolverFilter> filterFor(const Direction& direction);

    std::shared_ptr<const HRTFSet> hrtf_;
    std::map<std::pair<double, double>, std::shared_ptr<const ConvolverFilter>> known_;  // by azimuth and elevation
    PartitionedConvolver convolver_;
    int tailFrames_ = 0;
    mn_slot* slot_;                             // the FilterSet to use, written by control
    const FilterSet* previous_ = nullptr;       // of the last block, written by render
    std::shared_ptr<const FilterSet> current_;  // owns the set in the slot
};

}  // namespace brindlehum
