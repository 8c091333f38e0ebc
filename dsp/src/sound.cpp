// Sound and its builder.
#include "dsp/sound.h"

#include <algorithm>
#include <stdexcept>

namespace brindlehum {

Sound::Sound(std::vector<Track> tracks) : tracks_(std::move(tracks)) {
    for (const Track& track : tracks_) {
        if (track.length() != frames()) { throw std::invalid_argument("channels of unequal length"); }
    }
}

Sound::Sound(const std::vector<std::vector<float>>& channels)
    : Sound([&] {
          std::vector<Track> tracks;
          tracks.reserve(channels.size());
          for (const auto& samples : channels) { tracks.emplace_back(samples); }
          return tracks;
      }()) {}

std::vector<std::vector<float>> Sound::gather(int64_t start, int64_t end) const {
    std::vector<std::vector<float>> out;
    out.reserve(tracks_.size());
    for (const Track& track : tracks_) {
        out.emplace_back(size_t(end - start));
        track.read(start, out.back());
    }
    return out;
}

SoundBuilder::SoundBuilder(int channels) : blocks_(size_t(channels)), open_(size_t(channels)) {}

void SoundBuilder::append(const float* const* planes, int64_t count) {
    if (open_.empty()) { return; }
    for (int64_t done = 0; done < count;) {
        const auto room = SoundBlock::longest - int64_t(open_[0].size());
        const int64_t part = std::min(room, count - done);
        for (size_t c = 0; c < open_.size(); ++c) {
            open_[c].insert(open_[c].end(), planes[c] + done, planes[c] + done + part);
        }
        done += part;
        if (part == room) { close(); }
    }
}

void SoundBuilder::close() {
    for (size_t c = 0; c < open_.size(); ++c) {
        const auto count = int64_t(open_[c].size());
        blocks_[c].push_back(Track::of(std::make_shared<const SoundBlock>(std::move(open_[c])), 0, count));
        open_[c] = {};
    }
}

Sound SoundBuilder::soFar() const {
    std::vector<Track> tracks;
    for (const auto& blocks : blocks_) { tracks.push_back(Track::joined(blocks)); }
    return Sound(std::move(tracks));
}

Sound SoundBuilder::finish() {
    if (!open_.empty() && !open_[0].empty()) { close(); }
    return soFar();
}

}  // namespace brindlehum
