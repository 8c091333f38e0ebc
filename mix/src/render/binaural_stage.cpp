// BinauralStage: one partitioned convolution of 32 sources to two ears; its filters are replaced as a set.
#include "mix/render/binaural_stage.h"

#include <algorithm>
#include <utility>

namespace brindlehum {

// One filter per source; immutable once published.
struct BinauralStage::FilterSet {
    std::array<const ConvolverFilter*, sources> filters{};
    std::array<std::shared_ptr<const ConvolverFilter>, sources> owners;
};

BinauralStage::BinauralStage(std::shared_ptr<const HRTFSet> hrtf)
    : hrtf_(std::move(hrtf)),
      convolver_(sources, 2, partition, hrtf_->taps()),
      tailFrames_(hrtf_->taps() - 1),
      slot_(mn_slot_create()) {
    setDirections(std::vector<Direction>(sources));
}

BinauralStage::~BinauralStage() {
    mn_slot_destroy(slot_);
}

std::shared_ptr<const ConvolverFilter> BinauralStage::filterFor(const Direction& direction) {
    const auto key = std::pair(direction.az, direction.el);
    if (const auto known = known_.find(key); known != known_.end()) { return known->second; }
    auto [left, right] = hrtf_->impulses(direction);
    auto filter = std::make_shared<const ConvolverFilter>(
        std::vector<std::vector<float>>{std::move(left), std::move(right)}, partition);
    // Layouts reuse a few directions, but a turning sound field keeps asking for new ones: forget all when there are
    // too many.
    if (known_.size() >= maxKnown) { known_.clear(); }
    known_.emplace(key, filter);
    return filter;
}

std::shared_ptr<const BinauralStage::FilterSet> BinauralStage::setDirections(const std::vector<Direction>& directions) {
    auto next = current_ ? std::make_shared<FilterSet>(*current_) : std::make_shared<FilterSet>();
    const size_t count = std::min(directions.size(), size_t(sources));
    for (size_t i = 0; i < count; ++i) {
        next->owners[i] = filterFor(directions[i]);
        next->filters[i] = next->owners[i].get();
    }
    mn_slot_store(slot_, next.get());
    return std::exchange(current_, std::move(next));
}

void BinauralStage::reset() noexcept {
    convolver_.reset();
    previous_ = nullptr;
}

void BinauralStage::process(const float* const* lanes, int frames, float* left, float* right) noexcept {
    const auto* set = static_cast<const FilterSet*>(mn_slot_load(slot_));
    const bool changed = previous_ != nullptr && previous_ != set;
    float* ears[] = {left, right};
    convolver_.process(lanes, set->filters.data(), changed ? previous_->filters.data() : nullptr, ears, frames);
    previous_ = set;
}

}  // namespace brindlehum
