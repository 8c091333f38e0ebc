// Track: one channel as a list of pieces of shared blocks.
#include <algorithm>
#include <array>
#include <cassert>
#include <cstring>
#include <limits>

#include "dsp/sound.h"

namespace brindlehum {
namespace {

using Piece = Track::Piece;

void widen(PeakRange& range, bool& any, float low, float high) {
    range.low = any ? std::min(range.low, low) : low;
    range.high = any ? std::max(range.high, high) : high;
    any = true;
}

using Four = float __attribute__((vector_size(16)));

Four four(const float* values) {
    Four out;
    std::memcpy(&out, values, sizeof out);
    return out;
}

// The lowest value of one list and the highest of another, as long. A comparison with NaN is false, so that it is left
// out; compilers don't vectorise minima that keep that rule by themselves.
PeakRange rangeOf(std::span<const float> lows, std::span<const float> highs) {
    constexpr float infinity = std::numeric_limits<float>::infinity();
    constexpr Four none = {infinity, infinity, infinity, infinity};
    std::array<Four, 2> low = {none, none}, high = {-none, -none};
    size_t i = 0;
    for (; i + 8 <= lows.size(); i += 8) {
        for (size_t k = 0; k < 2; ++k) {
            const Four a = four(&lows[i + 4 * k]), b = four(&highs[i + 4 * k]);
            low[k] = a < low[k] ? a : low[k];
            high[k] = b > high[k] ? b : high[k];
        }
    }
    for (; i < lows.size(); ++i) {
        low[0][0] = lows[i] < low[0][0] ? lows[i] : low[0][0];
        high[0][0] = highs[i] > high[0][0] ? highs[i] : high[0][0];
    }
    PeakRange range{infinity, -infinity};
    for (int k = 0; k < 8; ++k) {
        range.low = std::min(range.low, low[size_t(k) / 4][k % 4]);
        range.high = std::max(range.high, high[size_t(k) / 4][k % 4]);
    }
    return range.low <= range.high ? range : PeakRange{};
}

PeakRange rangeOf(std::span<const float> samples) {
    return rangeOf(samples, samples);
}

std::vector<PeakRange> stretchesOf(const PeakCache& peaks) {
    constexpr size_t many = SoundBlock::stretch / PeakCache::block;
    std::vector<PeakRange> out;
    for (size_t i = 0; i < peaks.mins.size(); i += many) {
        const size_t count = std::min(many, peaks.mins.size() - i);
        out.push_back(rangeOf(std::span(peaks.mins).subspan(i, count), std::span(peaks.maxs).subspan(i, count)));
    }
    return out;
}

// Adds a piece at the end of the list: to its last piece if it goes on where that one ends.
void append(std::vector<Piece>& pieces, const Piece& piece) {
    if (piece.count == 0) { return; }
    const int64_t start = pieces.empty() ? 0 : pieces.back().start + pieces.back().count;
    if (!pieces.empty() && pieces.back().block == piece.block) {
        Piece& last = pieces.back();
        if (!piece.block || last.offset + last.count == piece.offset) {
            last.count += piece.count;
            return;
        }
    }
    pieces.push_back({piece.block, piece.offset, piece.count, start});
}

// The range of a block's samples from ..< to: single samples at the ends, cached peaks between them.
void widenByBlock(PeakRange& range, bool& any, const SoundBlock& block, int64_t from, int64_t to) {
    const auto size = int64_t(block.samples.size());
    if (from == 0 && to == size) {
        widen(range, any, block.range.low, block.range.high);
        return;
    }
    const auto single = [&](int64_t a, int64_t b) {
        if (a < b) {
            const PeakRange each = rangeOf(std::span(block.samples).subspan(size_t(a), size_t(b - a)));
            widen(range, any, each.low, each.high);
        }
    };
    const int64_t first = (from + PeakCache::block - 1) / PeakCache::block;
    const int64_t last = to == size ? int64_t(block.peaks.mins.size()) : to / PeakCache::block;
    if (first >= last) {
        single(from, to);
        return;
    }
    single(from, first * PeakCache::block);
    const auto between = [&](const std::vector<float>& all) {
        return std::span(all).subspan(size_t(first), size_t(last - first));
    };
    const PeakRange middle = rangeOf(between(block.peaks.mins), between(block.peaks.maxs));
    widen(range, any, middle.low, middle.high);
    single(std::min(last * PeakCache::block, to), to);
}

// The range of the stretches first ..< last, each of `size` samples, as they are cached.
void widenByCache(PeakRange& range, bool& any, const SoundBlock& block, int64_t size, size_t first, size_t last) {
    if (first >= last) { return; }
    PeakRange each;
    if (size == PeakCache::block) {
        const auto part = [&](const std::vector<float>& all) { return std::span(all).subspan(first, last - first); };
        each = rangeOf(part(block.peaks.mins), part(block.peaks.maxs));
    } else {
        each = block.stretches[first];
        for (size_t i = first + 1; i < last; ++i) {
            each.low = std::min(each.low, block.stretches[i].low);
            each.high = std::max(each.high, block.stretches[i].high);
        }
    }
    widen(range, any, each.low, each.high);
}

// The range of all stretches of `size` samples that from ..< to touches, but of nothing outside the piece: what was cut
// away doesn't count.
void widenAbout(PeakRange& range, bool& any, const Piece& piece, int64_t from, int64_t to, int64_t size) {
    int64_t first = from / size, last = (to + size - 1) / size;
    if (first * size < piece.offset) { widenByBlock(range, any, *piece.block, from, std::min(to, ++first * size)); }
    const int64_t end = piece.offset + piece.count;
    if (last * size > end && end < int64_t(piece.block->samples.size()) && first < last) {
        widenByBlock(range, any, *piece.block, std::max(from, --last * size), to);
    }
    widenByCache(range, any, *piece.block, size, size_t(first), size_t(last));
}

}  // namespace

PeakCache PeakCache::of(std::span<const float> samples) {
    PeakCache cache;
    const size_t count = (samples.size() + size_t(block) - 1) / size_t(block);
    cache.mins.reserve(count);
    cache.maxs.reserve(count);
    for (size_t i = 0; i < samples.size(); i += size_t(block)) {
        const PeakRange range = rangeOf(samples.subspan(i, std::min(size_t(block), samples.size() - i)));
        cache.mins.push_back(range.low);
        cache.maxs.push_back(range.high);
    }
    return cache;
}

SoundBlock::SoundBlock(std::vector<float> given)
    : samples(std::move(given)),
      peaks(PeakCache::of(samples)),
      stretches(stretchesOf(peaks)),
      range(rangeOf(peaks.mins, peaks.maxs)) {}

Track::Track(std::vector<Piece> pieces) {
    if (!pieces.empty()) { pieces_ = std::make_shared<const std::vector<Piece>>(std::move(pieces)); }
}

Track::Track(std::span<const float> samples) {
    std::vector<Piece> pieces;
    for (size_t i = 0; i < samples.size(); i += size_t(SoundBlock::longest)) {
        const auto part = samples.subspan(i, std::min(size_t(SoundBlock::longest), samples.size() - i));
        const auto block = std::make_shared<const SoundBlock>(std::vector<float>(part.begin(), part.end()));
        pieces.push_back({block, 0, int64_t(part.size()), int64_t(i)});
    }
    *this = Track(std::move(pieces));
}

Track Track::silence(int64_t count) {
    return of(nullptr, 0, count);
}

Track Track::of(std::shared_ptr<const SoundBlock> block, int64_t offset, int64_t count) {
    std::vector<Piece> pieces;
    append(pieces, {std::move(block), offset, count, 0});
    return Track(std::move(pieces));
}

Track Track::joined(std::span<const Track> tracks) {
    std::vector<Piece> pieces;
    size_t count = 0;
    for (const Track& track : tracks) { count += track.pieces().size(); }
    pieces.reserve(count);
    for (const Track& track : tracks) {
        for (const Piece& piece : track.pieces()) { append(pieces, piece); }
    }
    return Track(std::move(pieces));
}

int64_t Track::length() const {
    return pieces_ ? pieces_->back().start + pieces_->back().count : 0;
}

std::span<const Piece> Track::pieces() const {
    return pieces_ ? std::span<const Piece>(*pieces_) : std::span<const Piece>();
}

size_t Track::pieceAt(int64_t position) const {
    const auto all = pieces();
    const auto after = std::ranges::upper_bound(all, position, {}, &Piece::start);
    return after == all.begin() ? 0 : size_t(after - all.begin()) - 1;
}

Track Track::slice(int64_t start, int64_t end) const {
    assert(0 <= start && start <= end && end <= length());
    std::vector<Piece> pieces;
    const auto all = this->pieces();
    for (size_t i = pieceAt(start); i < all.size() && all[i].start < end; ++i) {
        const int64_t from = std::max(start, all[i].start);
        const int64_t to = std::min(end, all[i].start + all[i].count);
        append(pieces, {all[i].block, all[i].block ? all[i].offset + from - all[i].start : 0, to - from, 0});
    }
    return Track(std::move(pieces));
}

void Track::read(int64_t position, std::span<float> out) const {
    assert(0 <= position && position + int64_t(out.size()) <= length());
    const auto all = pieces();
    for (size_t i = pieceAt(position); !out.empty(); ++i) {
        const int64_t skip = position - all[i].start;
        const auto count = size_t(std::min(all[i].count - skip, int64_t(out.size())));
        if (all[i].block) {
            std::copy_n(all[i].block->samples.begin() + all[i].offset + skip, count, out.begin());
        } else {
            std::fill_n(out.begin(), count, 0.0F);
        }
        position += int64_t(count);
        out = out.subspan(count);
    }
}

template <class WidenByPiece>
PeakRange Track::peaksOf(int64_t start, int64_t end, const WidenByPiece& widenByPiece) const {
    assert(0 <= start && start <= end && end <= length());
    PeakRange range;
    bool any = false;
    const auto all = pieces();
    for (size_t i = pieceAt(start); i < all.size() && all[i].start < end; ++i) {
        const int64_t from = std::max(start, all[i].start) - all[i].start;
        const int64_t to = std::min(end, all[i].start + all[i].count) - all[i].start;
        if (from >= to) { continue; }
        if (all[i].block) {
            widenByPiece(range, any, all[i], all[i].offset + from, all[i].offset + to);
        } else {
            widen(range, any, 0, 0);
        }
    }
    return range;
}

PeakRange Track::peaks(int64_t start, int64_t end) const {
    return peaksOf(start, end, [](PeakRange& range, bool& any, const Piece& piece, int64_t from, int64_t to) {
        widenByBlock(range, any, *piece.block, from, to);
    });
}

PeakRange Track::peaksAbout(int64_t start, int64_t end, int64_t slack) const {
    if (slack < PeakCache::block) { return peaks(start, end); }
    const int64_t size = slack < SoundBlock::stretch ? PeakCache::block : SoundBlock::stretch;
    return peaksOf(start, end, [size](PeakRange& range, bool& any, const Piece& piece, int64_t from, int64_t to) {
        widenAbout(range, any, piece, from, to, size);
    });
}

}  // namespace brindlehum
