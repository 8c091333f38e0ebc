// HeardPosition: looks back over the blocks, and along a straight line within one.
#include "mix/render/heard_position.h"

#include <algorithm>

namespace brindlehum {

void HeardPosition::add(int32_t frames, double position) noexcept {
    const int64_t end = (count_ > 0 ? block(0).end : 0) + frames;
    ++count_;
    blocks_[(count_ - 1) % blocks] = {end, frames, position};
}

std::optional<double> HeardPosition::at(int32_t latency) const noexcept {
    if (count_ == 0) { return std::nullopt; }
    if (latency == 0) { return block(0).position; }
    const int64_t wanted = block(0).end - latency;
    for (size_t back = 0; back + 1 < std::min(count_, blocks); ++back) {
        const Block& later = block(back);
        const Block& earlier = block(back + 1);
        if (earlier.end >= wanted) { continue; }
        // Where the source jumps back, as a loop does, the block before says how fast it goes.
        const double step = (later.position - earlier.position) / later.frames;
        return step >= 0 ? later.position - step * double(later.end - wanted) : later.position;
    }
    return std::nullopt;
}

}  // namespace brindlehum
