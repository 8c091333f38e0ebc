// Reads boxes of ISO/IEC 14496-12 (tracks, durations, edit lists) and the QuickTime `chan` box.
#include "decode/mp4_track.h"

#include <array>
#include <cstdlib>
#include <initializer_list>
#include <string_view>

#include "decode/chunks.h"
#include "decode/container_layout.h"

namespace brindlehum {

namespace {

std::optional<Chunk> childOf(const FileHandle& file, const Chunk& parent, std::string_view name) {
    return findChunk(file, ChunkStyle::mp4, parent.body, parent.body + parent.size, name);
}

std::optional<Chunk> descend(const FileHandle& file, Chunk box, std::initializer_list<std::string_view> names) {
    for (const std::string_view name : names) {
        const auto inner = childOf(file, box, name);
        if (!inner) { return std::nullopt; }
        box = *inner;
    }
    return box;
}

std::optional<Chunk> movie(const FileHandle& file) {
    return findChunk(file, ChunkStyle::mp4, 0, file.size(), "moov");
}

std::optional<Chunk> track(const FileHandle& file, const Chunk& moov, int trackID) {
    const int64_t end = moov.body + moov.size;
    auto trak = childOf(file, moov, "trak");
    for (int i = 0; trak && i < 64; ++i) {
        const auto header = childOf(file, *trak, "tkhd");
        std::array<uint8_t, 24> bytes{};
        if (header && file.readExactly(header->body, bytes.data(), bytes.size()) &&
            readBE32(bytes.data() + (bytes[0] == 1 ? 20 : 12)) == uint32_t(trackID)) {
            return trak;
        }
        trak = findChunk(file, ChunkStyle::mp4, trak->next, end, "trak");
    }
    return std::nullopt;
}

// Time scale (units per second) and duration, which `mvhd` and `mdhd` store at the same offsets.
struct Duration {
    int64_t scale = 0;
    int64_t units = 0;
};

std::optional<Duration> durationIn(const FileHandle& file, const std::optional<Chunk>& header) {
    std::array<uint8_t, 32> bytes{};
    if (!header || !file.readExactly(header->body, bytes.data(), bytes.size())) { return std::nullopt; }
    const uint8_t* p = bytes.data();
    const Duration duration = p[0] == 1 ? Duration{readBE32(p + 20), int64_t(readBE64(p + 24))}
                                        : Duration{readBE32(p + 12), readBE32(p + 16)};
    // No real file has more than 2^40 units; the limit keeps the products below exact.
    if (duration.scale == 0 || duration.units < 0 || duration.units > int64_t(1) << 40) { return std::nullopt; }
    return duration;
}

// One section of the media after a silent wait; both in units of the movie.
struct Edit {
    int64_t wait = 0;
    int64_t duration = 0;
    int64_t mediaTime = 0;  // in units of the media
};

// None unless the list is at most one wait and one section.
std::optional<Edit> singleEdit(const FileHandle& file, const Chunk& list) {
    std::array<uint8_t, 8 + 2 * 20> bytes{};
    if (file.readAt(list.body, bytes.data(), bytes.size()) < 8 + 12) { return std::nullopt; }
    const bool large = bytes[0] == 1;
    const uint32_t count = readBE32(bytes.data() + 4);
    if (count < 1 || count > 2 || list.size < 8 + int64_t(count) * (large ? 20 : 12)) { return std::nullopt; }
    Edit edit;
    const uint8_t* p = bytes.data() + 8;
    for (uint32_t i = 0; i < count; ++i, p += large ? 20 : 12) {
        const auto duration = large ? int64_t(readBE64(p)) : int64_t(readBE32(p));
        const auto time = large ? int64_t(readBE64(p + 8)) : int64_t(int32_t(readBE32(p + 4)));
        const bool wait = time == -1;
        if (duration < 0 || duration > int64_t(1) << 40 || wait != (i + 1 < count)) { return std::nullopt; }
        (wait ? edit.wait : edit.duration) = duration;
        edit.mediaTime = time;
    }
    return edit;
}

// value x by / over, rounded to the nearest integer.
int64_t scaled(int64_t value, int64_t by, int64_t over) {
    return int64_t((__int128(value) * by + over / 2) / over);
}

}  // namespace

std::optional<ChannelLayout> mp4Layout(const FileHandle& file, int trackID) {
    const auto moov = movie(file);
    const auto trak = moov ? track(file, *moov, trackID) : std::nullopt;
    const auto stsd = trak ? descend(file, *trak, {"mdia", "minf", "stbl", "stsd"}) : std::nullopt;
    if (!stsd) { return std::nullopt; }
    // Version, flags and count precede the first sample entry.
    const auto entry = chunkAt(file, ChunkStyle::mp4, stsd->body + 8, stsd->body + stsd->size);
    uint8_t version[2];
    if (!entry || !file.readExactly(entry->body + 8, version, 2)) { return std::nullopt; }
    // The sound description is 28 bytes long, 16 more in version 1 and 36 more in version 2.
    const int64_t grown = readBE16(version) == 1 ? 16 : readBE16(version) == 2 ? 36 : 0;
    const int64_t end = entry->body + entry->size;
    const auto chan = findChunk(file, ChunkStyle::mp4, entry->body + 28 + grown, end, "chan");
    return chan ? parseChanChunk(file, chan->body + 4, chan->size - 4) : std::nullopt;
}

std::optional<int64_t> mp4Frames(const FileHandle& file, int trackID, int rate) {
    const auto moov = movie(file);
    const auto trak = moov ? track(file, *moov, trackID) : std::nullopt;
    const auto media = trak ? durationIn(file, descend(file, *trak, {"mdia", "mdhd"})) : std::nullopt;
    if (!media || media->units == 0) { return std::nullopt; }
    const int64_t whole = scaled(media->units, rate, media->scale);
    const auto list = descend(file, *trak, {"edts", "elst"});
    if (!list) { return whole; }
    const auto movieTime = durationIn(file, childOf(file, *moov, "mvhd"));
    const auto edit = singleEdit(file, *list);
    if (!movieTime || !edit || edit->mediaTime < 0 || edit->mediaTime > media->units) { return std::nullopt; }
    const int64_t wait = scaled(edit->wait, rate, movieTime->scale);
    const int64_t left = whole - scaled(edit->mediaTime, rate, media->scale);
    const int64_t stretch = scaled(edit->duration, rate, movieTime->scale);
    const int64_t grain = rate / movieTime->scale + 1;
    const bool agree = std::abs(stretch - left) <= grain;
    return wait + (agree || stretch == 0 ? left : std::min(stretch, left));
}

}  // namespace brindlehum
