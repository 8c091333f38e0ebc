// Computes a tile of a spectrogram.
#include "ui/editor/spectrum_tile.h"

#include <algorithm>
#include <cmath>

namespace brindlehum {
namespace {

constexpr int64_t shortestHop = 16;  // frames; windows of 43 ms differ little between

Track under(const Sound& sound, const SpectrumTile::Place& place, int reach) {
    const Track& track = sound.track(place.channel);
    const int64_t from = std::clamp<int64_t>(place.first() - reach, 0, track.length());
    const int64_t to = place.first() + place.hop * SpectrumTile::columns + reach;
    return track.slice(from, std::clamp<int64_t>(to, from, track.length()));
}

// A row's bins: the loudest of those it spans, or what lies between two where it is narrower than a bin.
struct Row {
    double low = 0;  // bins
    double high = 0;
    float level(const std::vector<float>& db) const {
        const auto last = double(db.size() - 1);
        if (high - low < 1) {
            const double at = std::clamp((low + high) / 2, 0.0, last);
            const auto left = size_t(at);
            return std::lerp(db[left], db[std::min(left + 1, db.size() - 1)], float(at - double(left)));
        }
        const auto from = size_t(std::clamp(std::ceil(low), 0.0, last)), to = size_t(std::clamp(high, 0.0, last));
        return *std::max_element(db.begin() + std::ptrdiff_t(from),
                                 db.begin() + std::ptrdiff_t(std::max(from, to)) + 1);
    }
};

std::vector<Row> rowsOf(int count, const SpectrumAxis& axis, double binHz) {
    std::vector<Row> rows;
    for (int row = 0; row < count; ++row) {
        const double top = axis.frequencyAt(1 - double(row) / count),
                     bottom = axis.frequencyAt(1 - double(row + 1) / count);
        rows.push_back({bottom / binHz, top / binHz});
    }
    return rows;
}

}  // namespace

int64_t spectrumHop(double framesPerPixel) {
    int64_t hop = shortestHop;
    while (double(hop) * 2 <= framesPerPixel) { hop *= 2; }
    return hop;
}

bool SpectrumTile::fits(const Sound& sound) const {
    if (place.channel >= sound.channels()) { return false; }
    const auto same = [](const Track::Piece& a, const Track::Piece& b) {
        return a.block == b.block && a.offset == b.offset && a.count == b.count;
    };
    const Track now = brindlehum::under(sound, place, Spectrogram::longest / 2);
    return std::ranges::equal(now.pieces(), under.pieces(), same);
}

SpectrumTile SpectrumTile::make(const Sound& sound, const Place& place, const SpectrumAxis& axis,
                                Spectrogram& spectrogram, const std::function<bool()>& stop) {
    SpectrumTile out{place, {}, brindlehum::under(sound, place, Spectrogram::longest / 2)};
    std::vector<uint8_t> levels(size_t(columns) * size_t(place.rows));
    const auto rows = rowsOf(place.rows, axis, spectrogram.frequency(1));
    std::vector<float> db(size_t(spectrogram.bins()));
    for (int column = 0; column < columns; ++column) {
        if (stop()) { return out; }
        const int64_t from = place.first() + column * place.hop;
        if (from >= sound.frames()) { break; }
        spectrogram.levels(sound.track(place.channel), from, from + place.hop, db.data());
        for (size_t row = 0; row < rows.size(); ++row) {
            const float share = 1 - rows[row].level(db) / lowestDb;
            levels[row * columns + size_t(column)] = uint8_t(std::lround(std::clamp(share, 0.0F, 1.0F) * 255));
        }
    }
    out.levels = std::move(levels);
    return out;
}

}  // namespace brindlehum
