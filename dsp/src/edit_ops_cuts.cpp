// The primitive cuts.
#include <array>
#include <cassert>

#include "dsp/edit_ops.h"

namespace brindlehum::EditOps {
namespace {

// Applies `operation` to each track and its index.
template <typename Operation>
Sound eachTrack(const Sound& sound, Operation operation) {
    std::vector<Track> out;
    out.reserve(size_t(sound.channels()));
    for (int c = 0; c < sound.channels(); ++c) { out.push_back(operation(sound.track(c), c)); }
    return Sound(std::move(out));
}

// The track with the range replaced by `with`.
Track replaced(const Track& track, int64_t start, int64_t end, const Track& with) {
    return Track::joined(std::array{track.slice(0, start), with, track.slice(end, track.length())});
}

}  // namespace

Sound slice(const Sound& sound, int64_t start, int64_t end) {
    return eachTrack(sound, [&](const Track& track, int) { return track.slice(start, end); });
}

Sound splice(const Sound& sound, int64_t start, int64_t end) {
    return eachTrack(sound, [&](const Track& track, int) { return replaced(track, start, end, {}); });
}

Sound insert(const Sound& sound, int64_t at, const Sound& clip) {
    const Track quiet = Track::silence(clip.frames());
    return eachTrack(sound, [&](const Track& track, int c) {
        return replaced(track, at, at, c < clip.channels() ? clip.track(c) : quiet);
    });
}

Sound silence(const Sound& sound, int64_t start, int64_t end) {
    const Track quiet = Track::silence(end - start);
    return eachTrack(sound, [&](const Track& track, int) { return replaced(track, start, end, quiet); });
}

Sound replaceRegion(const Sound& sound, int64_t start, int64_t end, const Sound& with) {
    assert(with.channels() > 0);
    return eachTrack(sound, [&](const Track& track, int c) {
        return replaced(track, start, end, with.track(c < with.channels() ? c : 0));
    });
}

Sound monoFold(const Sound& sound, int64_t start, int64_t end) {
    if (sound.channels() == 0 || start == end) { return sound; }
    Channels range = sound.gather(start, end);
    const double share = 1.0 / double(range.size());
    for (size_t i = 0; i < range[0].size(); ++i) {
        double sum = 0;
        for (const auto& x : range) { sum += double(x[i]); }
        range[0][i] = float(sum * share);
    }
    range.resize(1);
    return replaceRegion(sound, start, end, Sound(range));
}

Sound swapLR(const Sound& sound, int64_t start, int64_t end) {
    if (sound.channels() < 2) { return sound; }
    return eachTrack(sound, [&](const Track& track, int c) {
        return c < 2 ? replaced(track, start, end, sound.track(1 - c).slice(start, end)) : track;
    });
}

Channels slice(const Channels& channels, int64_t start, int64_t end) {
    Channels out;
    out.reserve(channels.size());
    for (const auto& x : channels) {
        assert(0 <= start && start <= end && end <= int64_t(x.size()));
        out.emplace_back(x.begin() + start, x.begin() + end);
    }
    return out;
}

}  // namespace brindlehum::EditOps
