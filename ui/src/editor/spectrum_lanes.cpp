// Keeps tiles and composes them into pixels.
#include "ui/editor/spectrum_lanes.h"

#include <algorithm>
#include <cmath>

#include "ui/editor/lane_picture.h"
#include "ui/look/theme.h"

namespace brindlehum {
namespace {

constexpr size_t mostBytes = 96 << 20;  // of tiles
constexpr int mostRows = 1024;

// The columns of tiles under each pixel of a line: the louder of the first and the last, or a mixture of two where
// a column is wider than a pixel.
struct Column {
    int64_t first = 0;
    int64_t last = 0;
    int share = 0;  // of the last one, 0 to 256; without a mixture -1
};

std::vector<Column> columnsOf(const VisibleRange& visible, int width, int64_t hop) {
    std::vector<Column> out;
    out.reserve(size_t(width));
    const double perPixel = visible.length / width / double(hop);
    for (int x = 0; x < width; ++x) {
        const double at = visible.first / double(hop) + x * perPixel;
        if (perPixel >= 1) {
            out.push_back({int64_t(at), int64_t(at + perPixel - 1e-9), -1});
        } else {
            const double centre = std::max(at + perPixel / 2 - 0.5, 0.0);
            out.push_back({int64_t(centre), int64_t(centre) + 1, int((centre - std::floor(centre)) * 256)});
        }
    }
    return out;
}

}  // namespace

SpectrumLanes::SpectrumLanes(MainLoop& loop, QObject* parent) : QObject(parent), queue_(loop, "Brindlehum.spectrum") {}

const SpectrumTile* SpectrumLanes::tile(const Shown& shown, const Place& place, std::vector<Place>& missing) {
    const auto found = tiles_.find(place);
    if (found != tiles_.end()) {
        SpectrumTile& tile = found->second;
        if (tile.revision != shown.revision && tile.fits(shown.sound)) { tile.revision = shown.revision; }
        tile.used = uses_;
        if (tile.revision == shown.revision) { return &tile; }
    }
    missing.push_back(place);
    return nullptr;
}

void SpectrumLanes::composeLane(const Shown& shown, int channel, int top, int bottom, std::vector<Place>& missing) {
    const int width = image_.width(), rows = std::min(bottom - top, mostRows);
    const int64_t hop = spectrumHop(shown.visible.length / width);
    const auto columns = columnsOf(shown.visible, width, hop);
    const int64_t lastTile = std::max<int64_t>(shown.sound.frames() - 1, 0) / (hop * SpectrumTile::columns);
    const int64_t firstIndex = columns.front().first / SpectrumTile::columns;
    std::vector<const SpectrumTile*> tiles;
    for (int64_t i = firstIndex; i <= std::min(columns.back().last / SpectrumTile::columns, lastTile); ++i) {
        tiles.push_back(tile(shown, {channel, rows, hop, i, shown.axis.isLinear}, missing));
    }
    const auto levelsAt = [&](int64_t column) -> const uint8_t* {
        const auto index = size_t(column / SpectrumTile::columns - firstIndex);
        if (index >= tiles.size() || !tiles[index]) { return nullptr; }
        return tiles[index]->levels.data() + column % SpectrumTile::columns;
    };
    const auto colors = spectrumColors(shown.isDark);
    auto* pixels = reinterpret_cast<QRgb*>(image_.bits());
    const qsizetype stride = image_.bytesPerLine() / qsizetype(sizeof(QRgb));
    std::vector<std::pair<const uint8_t*, const uint8_t*>> sources;
    for (const Column& column : columns) { sources.emplace_back(levelsAt(column.first), levelsAt(column.last)); }
    for (int y = top; y < bottom; ++y) {
        const int offset = std::min((y - top) * rows / (bottom - top), rows - 1) * SpectrumTile::columns;
        for (int x = 0; x < width; ++x) {
            const auto [first, last] = sources[size_t(x)];
            const int a = first ? first[offset] : 0, b = last ? last[offset] : a;
            const int share = columns[size_t(x)].share;
            pixels[y * stride + x] = colors[size_t(share < 0 ? std::max(a, b) : a + (b - a) * share / 256)];
        }
    }
}

void SpectrumLanes::compose(const Shown& shown) {
    ++uses_;
    std::vector<Place> missing;
    const int lanes = std::min(shown.sound.channels(), mostLanes);
    for (int c = 0; c < lanes; ++c) {
        composeLane(shown, c, image_.height() * c / lanes, image_.height() * (c + 1) / lanes, missing);
    }
    request(shown, std::move(missing));
}

// All lanes fill from the left to the right together.
void SpectrumLanes::request(const Shown& shown, std::vector<Place> missing) {
    const bool isAsked = requestedRevision_ == shown.revision && requests_.isBusy() &&
                         std::ranges::all_of(missing, [&](const Place& place) {
                             return std::ranges::find(requested_, place) != requested_.end();
                         });
    if (isAsked && !missing.empty()) { return; }
    std::ranges::sort(missing, {}, [](const Place& place) { return std::pair(place.index, place.channel); });
    requested_ = missing;
    requestedRevision_ = shown.revision;
    if (missing.empty()) { return requests_.cancel(); }
    const auto work = [this, missing = std::move(missing), sound = shown.sound, axis = shown.axis,
                       revision = shown.revision](const Background::Task& task) {
        Spectrogram spectrogram(axis.sampleRate);
        for (const Place& place : missing) {
            auto made = SpectrumTile::make(sound, place, axis, spectrogram, [&] { return task.isStopped(); });
            if (task.isStopped()) { return; }
            made.revision = revision;
            task.tell([this, made = std::move(made)] { keep(made); });
        }
    };
    queue_.run(requests_, work, [this] {
        requested_.clear();
        Q_EMIT changed();
    });
}

void SpectrumLanes::keep(SpectrumTile tile) {
    tile.used = uses_;
    bytes_ += tile.levels.size();
    SpectrumTile& place = tiles_[tile.place];
    bytes_ -= place.levels.size();
    place = std::move(tile);
    isStale_ = true;
    while (bytes_ > mostBytes) {
        const auto oldest = std::ranges::min_element(tiles_, {}, [](const auto& each) { return each.second.used; });
        if (oldest->second.used == uses_) { break; }
        bytes_ -= oldest->second.levels.size();
        tiles_.erase(oldest);
    }
    Q_EMIT changed();
}

void SpectrumLanes::clear() {
    requests_.cancel();
    requested_.clear();
    tiles_.clear();
    bytes_ = 0;
    isStale_ = true;
}

void SpectrumLanes::paint(QPainter& painter, const QRectF& area, double dpr, const Shown& shown) {
    const QSize size = (area.size() * dpr).toSize();
    if (shown.sound.frames() == 0 || size.isEmpty()) { return; }
    if (isStale_ || image_.size() != size || revision_ != shown.revision || visible_ != shown.visible ||
        axis_ != shown.axis || isDark_ != shown.isDark) {
        if (image_.size() != size) { image_ = QImage(size, QImage::Format_RGB32); }
        isStale_ = false;
        revision_ = shown.revision;
        visible_ = shown.visible;
        axis_ = shown.axis;
        isDark_ = shown.isDark;
        compose(shown);
    }
    painter.drawImage(area, image_, QRectF(image_.rect()));
}

}  // namespace brindlehum
