// FrameSlicer: cuts a signal that comes in blocks into frames, which may overlap.
#pragma once

#include <algorithm>
#include <cstddef>
#include <span>
#include <vector>

namespace brindlehum {

class FrameSlicer {
public:
    // Frames of `size` samples, `hop` (1 to `size`) apart. A frame counts once `beyond` samples have followed it.
    FrameSlicer(int size, int hop, int beyond = 0) : size_(size_t(size)), hop_(size_t(hop)), beyond_(size_t(beyond)) {}

    // Calls `use` with each frame that `block` completes, as a pointer to its first sample.
    template <class Use>
    void push(std::span<const float> block, Use use) {
        while (!block.empty()) {
            const size_t count = std::min(block.size(), piece);
            held_.insert(held_.end(), block.begin(), block.begin() + ptrdiff_t(count));
            block = block.subspan(count);
            size_t at = 0;
            for (; at + size_ + beyond_ <= held_.size(); at += hop_) { use(held_.data() + at); }
            held_.erase(held_.begin(), held_.begin() + ptrdiff_t(at));
        }
    }

private:
    static constexpr size_t piece = 16384;  // samples taken at a time, so that a whole signal isn't copied at once
    size_t size_, hop_, beyond_;
    std::vector<float> held_;  // from the first sample of the next frame on
};

}  // namespace brindlehum
