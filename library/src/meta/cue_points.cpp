// Cue points: reads the table, moves the points of the part, and keeps their entries of the list.
#include "meta/cue_points.h"

#include <algorithm>
#include <set>

namespace brindlehum::RIFFMeta {
namespace {

constexpr size_t pointBytes = 24;
constexpr size_t frameAt = 20;  // of a point
constexpr uint64_t mostBytes = 4 << 20;

struct Points {
    std::string bytes;
    std::set<uint32_t> names;
};

uint32_t number(const std::string& bytes, size_t at) {
    return uint32_t(readLE(bytes.data() + at, 4));
}

Points pointsOf(const std::string& table, int64_t lower, int64_t upper) {
    Points kept;
    if (table.size() < 4) { return kept; }
    const size_t count = std::min<size_t>(number(table, 0), (table.size() - 4) / pointBytes);
    for (size_t i = 0; i < count; ++i) {
        std::string point = table.substr(4 + i * pointBytes, pointBytes);
        const int64_t frame = number(point, frameAt);
        if (frame < lower || frame >= upper || !kept.names.insert(number(point, 0)).second) { continue; }
        const std::string moved = le32(uint32_t(frame - lower));
        // The second field is the point's place in a play list, which is the frame where there is none.
        point.replace(4, 4, moved).replace(8, 12, "data" + le32(0) + le32(0)).replace(frameAt, 4, moved);
        kept.bytes += point;
    }
    return kept;
}

// The entries of an `adtl` list that name one of the points.
std::string entriesOf(const std::string& list, const std::set<uint32_t>& names) {
    std::string kept;
    for (size_t at = 4; at + 12 <= list.size();) {
        const std::string id = list.substr(at, 4);
        const size_t size = number(list, at + 4);
        if (size < 4 || size > list.size() - at - 8) { break; }
        const bool known = id == "labl" || id == "note" || id == "ltxt";
        if (known && names.contains(number(list, at + 8))) { kept += riffChunk(id, list.substr(at + 8, size)); }
        at += 8 + size + size % 2;
    }
    return kept;
}

}  // namespace

std::string riffChunk(const std::string& id, const std::string& body) {
    return id + le32(uint32_t(body.size())) + body + std::string(body.size() % 2, '\0');
}

std::string cuePoints(const FileHandle& file, const Walk& walk, int64_t lower, int64_t upper) {
    const Chunk* cue = find(walk.chunks, "cue ");
    if (!cue || walk.container == Container::w64) { return {}; }
    const Points points = pointsOf(content(file, *cue, mostBytes), lower, upper);
    if (points.names.empty()) { return {}; }
    std::string out = riffChunk("cue ", le32(uint32_t(points.names.size())) + points.bytes);
    std::string entries;
    for (const Chunk& chunk : walk.chunks) {
        if (chunk.id != "LIST") { continue; }
        const std::string list = content(file, chunk, mostBytes);
        if (list.starts_with("adtl")) { entries += entriesOf(list, points.names); }
    }
    return entries.empty() ? out : out + riffChunk("LIST", "adtl" + entries);
}

}  // namespace brindlehum::RIFFMeta
