// Filters channels in groups, block by block.
#include "loudness/k_powers.h"

#include <algorithm>
#include <cmath>

namespace brindlehum::Loudness {
namespace {

// Zeroes decayed filter memory, before it becomes denormal numbers, which are slow; below -600 dB it counts as silence.
void settle(KState& state) {
    for (KState::Stage* stage : {&state.shelf, &state.highPass}) {
        for (auto* values : {stage->x1, stage->x2, stage->y1, stage->y2}) {
            for (int c = 0; c < 4; ++c) {
                if (!(std::abs(values[c]) > 1e-30) || !std::isfinite(values[c])) { values[c] = 0; }
            }
        }
    }
}

}  // namespace

KPowers::KPowers(double sampleRate, const std::vector<size_t>& channels)
    : blockFrames_(std::max<int64_t>(int64_t(0.1 * sampleRate), 1)), filters_(kWeighting(sampleRate)) {
    for (size_t at = 0; at < channels.size();) {
        const size_t left = channels.size() - at;
        const size_t take = left >= 4 ? 4 : left >= 2 ? 2 : 1;
        Group& group = groups_.emplace_back();
        for (; group.channels.size() < take; ++at) { group.channels.push_back(channels[at]); }
    }
}

void KPowers::push(const float* const* planes, int64_t frames, const Sink& sink) {
    for (Group& group : groups_) { measure(group, planes, frames, sink); }
    frames_ += frames;
}

void KPowers::measure(Group& group, const float* const* planes, int64_t frames, const Sink& sink) const {
    const Kernels& kernels = fastestKernels();
    const size_t count = group.channels.size();
    const auto run = count == 1 ? kernels.one : count == 2 ? kernels.two : kernels.four;
    const float* chosen[4] = {};
    for (size_t c = 0; c < count; ++c) { chosen[c] = planes[group.channels[c]]; }
    int64_t block = frames_ / blockFrames_;
    int64_t filled = frames_ % blockFrames_;
    for (int64_t at = 0; at < frames;) {
        const int64_t take = std::min(blockFrames_ - filled, frames - at);
        run(chosen, at, take, filters_.first, filters_.second, group.state, group.energies.data());
        at += take;
        filled += take;
        if (filled < blockFrames_) { continue; }
        filled = 0;
        settle(group.state);
        for (size_t c = 0; c < count; ++c) {
            sink(size_t(block), group.channels[c], group.energies[c] / double(blockFrames_));
        }
        group.energies = {};
        ++block;
    }
}

}  // namespace brindlehum::Loudness
