// Sound: immutable audio in memory, made of shared blocks, so that a copy, a cut or a step of undo costs no samples.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace brindlehum {

// The lowest and the highest sample of a stretch; both 0 for an empty one. Samples that aren't numbers are left out.
struct PeakRange {
    float low = 0;
    float high = 0;
    bool operator==(const PeakRange&) const = default;
};

// Minima and maxima in blocks of 256 samples; the last one may be shorter.
struct PeakCache {
    static constexpr int64_t block = 256;
    std::vector<float> mins;
    std::vector<float> maxs;
    static PeakCache of(std::span<const float> samples);
};

// A run of samples of one channel that many sounds may share. Never edited once it is made.
struct SoundBlock {
    static constexpr int64_t longest = 65536;  // samples
    static constexpr int64_t stretch = 16 * PeakCache::block;
    explicit SoundBlock(std::vector<float> samples);
    const std::vector<float> samples;
    const PeakCache peaks;
    const std::vector<PeakRange> stretches;  // of `stretch` samples each; the last one may be shorter
    const PeakRange range;                   // of all samples
};

// One channel: pieces of blocks, one after another. Any thread; copies are cheap.
class Track {
public:
    struct Piece {
        std::shared_ptr<const SoundBlock> block;  // null: silence
        int64_t offset = 0;                       // of the first sample in the block
        int64_t count = 0;                        // samples, at least 1
        int64_t start = 0;                        // of the first sample in the track
    };

    Track() = default;
    // Copies the samples into blocks.
    explicit Track(std::span<const float> samples);
    static Track silence(int64_t count);
    static Track of(std::shared_ptr<const SoundBlock> block, int64_t offset, int64_t count);
    // The tracks one after another. Neighbours that lie side by side in one block become one piece again.
    static Track joined(std::span<const Track> tracks);

    int64_t length() const;
    std::span<const Piece> pieces() const;
    // The range start ..< end; 0 <= start <= end <= length. Costs the pieces in it.
    Track slice(int64_t start, int64_t end) const;
    // Copies the samples from `position` on; the whole span must lie in the track.
    void read(int64_t position, std::span<float> out) const;
    // Over start ..< end, exact. Costs about a block's peaks for each end, and one look for each block between.
    PeakRange peaks(int64_t start, int64_t end) const;
    // The same, but up to `slack` samples of the track on either side may count as well, so that less memory is read.
    PeakRange peaksAbout(int64_t start, int64_t end, int64_t slack) const;

private:
    explicit Track(std::vector<Piece> pieces);
    template <class WidenByPiece>
    PeakRange peaksOf(int64_t start, int64_t end, const WidenByPiece& widenByPiece) const;
    // The piece that holds the position, or the end.
    size_t pieceAt(int64_t position) const;
    std::shared_ptr<const std::vector<Piece>> pieces_;  // null: empty
};

// Channels of equal length. Any thread; copies are cheap.
class Sound {
public:
    Sound() = default;
    // Throws std::invalid_argument for tracks of unequal length.
    explicit Sound(std::vector<Track> tracks);
    // Copies the samples. Throws as above.
    explicit Sound(const std::vector<std::vector<float>>& channels);

    int channels() const { return int(tracks_.size()); }
    int64_t frames() const { return tracks_.empty() ? 0 : tracks_[0].length(); }
    const Track& track(int channel) const { return tracks_[size_t(channel)]; }
    std::span<const Track> tracks() const { return tracks_; }
    // The samples of start ..< end, one list a channel.
    std::vector<std::vector<float>> gather(int64_t start, int64_t end) const;
    std::vector<std::vector<float>> gather() const { return gather(0, frames()); }

private:
    std::vector<Track> tracks_;
};

// Makes a Sound from samples that arrive in order.
class SoundBuilder {
public:
    explicit SoundBuilder(int channels);
    // One plane per channel.
    void append(const float* const* planes, int64_t count);
    // All whole blocks so far: what can be shown while the rest arrives.
    Sound soFar() const;
    // All samples; ends the builder.
    Sound finish();

private:
    void close();
    std::vector<std::vector<Track>> blocks_;  // by channel, a track for each block
    std::vector<std::vector<float>> open_;    // the block that is being filled, one list a channel
};

}  // namespace brindlehum
