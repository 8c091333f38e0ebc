// The primitive cuts.
#include <algorithm>
#include <cassert>

#include "dsp/edit_ops.h"

namespace brindlehum::EditOps {
namespace {

using Samples = std::vector<float>;

Samples piece(const Samples& x, int64_t start, int64_t end) {
    assert(0 <= start && start <= end && end <= int64_t(x.size()));
    return {x.begin() + start, x.begin() + end};
}

// Applies `operation` to each channel and its index.
template <typename Operation>
Channels eachChannel(const Channels& channels, Operation operation) {
    Channels out;
    out.reserve(channels.size());
    for (size_t c = 0; c < channels.size(); ++c) { out.push_back(operation(channels[c], c)); }
    return out;
}

// x with the range start ..< end replaced by `with`.
Samples replaced(const Samples& x, int64_t start, int64_t end, std::span<const float> with) {
    assert(0 <= start && start <= end && end <= int64_t(x.size()));
    Samples out;
    out.reserve(x.size() - size_t(end - start) + with.size());
    out.insert(out.end(), x.begin(), x.begin() + start);
    out.insert(out.end(), with.begin(), with.end());
    out.insert(out.end(), x.begin() + end, x.end());
    return out;
}

}  // namespace

Channels slice(const Channels& channels, int64_t start, int64_t end) {
    return eachChannel(channels, [&](const Samples& x, size_t) { return piece(x, start, end); });
}

Channels splice(const Channels& channels, int64_t start, int64_t end) {
    return eachChannel(channels, [&](const Samples& x, size_t) { return replaced(x, start, end, {}); });
}

Channels insert(const Channels& channels, int64_t at, const Channels& clip) {
    if (clip.empty()) { return channels; }
    const Samples quiet(clip[0].size());
    return eachChannel(
        channels, [&](const Samples& x, size_t c) { return replaced(x, at, at, c < clip.size() ? clip[c] : quiet); });
}

Channels silence(const Channels& channels, int64_t start, int64_t end) {
    Channels out = channels;
    for (Samples& x : out) { std::fill(x.begin() + start, x.begin() + end, 0.0F); }
    return out;
}

Channels replaceRegion(const Channels& channels, int64_t start, int64_t end, const Channels& with) {
    assert(!with.empty());
    return eachChannel(channels, [&](const Samples& x, size_t c) {
        return replaced(x, start, end, c < with.size() ? with[c] : with[0]);
    });
}

Channels monoFold(const Channels& channels, int64_t start, int64_t end) {
    Channels out = channels;
    if (channels.empty()) { return out; }
    const double share = 1.0 / double(channels.size());
    for (int64_t i = start; i < end; ++i) {
        double sum = 0;
        for (const Samples& x : channels) { sum += double(x[size_t(i)]); }
        for (Samples& x : out) { x[size_t(i)] = float(sum * share); }
    }
    return out;
}

Channels swapLR(const Channels& channels, int64_t start, int64_t end) {
    Channels out = channels;
    if (out.size() >= 2) { std::swap_ranges(out[0].begin() + start, out[0].begin() + end, out[1].begin() + start); }
    return out;
}

}  // namespace brindlehum::EditOps
