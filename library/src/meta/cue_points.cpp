// Cue points: reads the table, and what the list says of them.
#include "meta/cue_points.h"

#include <algorithm>
#include <map>
#include <set>

namespace brindlehum::RIFFMeta {
namespace {

constexpr size_t pointBytes = 24;
constexpr size_t frameAt = 20;  // of a point
constexpr uint64_t mostBytes = 4 << 20;

uint32_t number(const std::string& bytes, size_t at) {
    return uint32_t(readLE(bytes.data() + at, 4));
}

std::vector<WavCue> pointsOf(const std::string& table, int64_t lower, int64_t upper) {
    std::vector<WavCue> points;
    std::set<uint32_t> names;
    if (table.size() < 4) { return points; }
    const size_t count = std::min<size_t>(number(table, 0), (table.size() - 4) / pointBytes);
    for (size_t i = 0; i < count; ++i) {
        const size_t at = 4 + i * pointBytes;
        const int64_t frame = number(table, at + frameAt);
        if (frame < lower || frame >= upper || !names.insert(number(table, at)).second) { continue; }
        points.push_back({number(table, at), frame - lower, 0, {}});
    }
    return points;
}

// Gives the entries of an `adtl` list to the points that they name.
void takeEntries(const std::string& list, std::vector<WavCue>& points) {
    std::map<uint32_t, WavCue*> byName;
    for (WavCue& point : points) { byName[point.name] = &point; }
    for (size_t at = 4; at + 12 <= list.size();) {
        const std::string id = list.substr(at, 4);
        const size_t size = number(list, at + 4);
        if (size < 4 || size > list.size() - at - 8) { break; }
        const auto found = byName.find(number(list, at + 8));
        if (found != byName.end() && (id == "labl" || id == "note" || id == "ltxt")) {
            WavCue& point = *found->second;
            point.entries += riffChunk(id, list.substr(at + 8, size));
            if (id == "ltxt" && size >= 8 && point.length == 0) { point.length = number(list, at + 12); }
        }
        at += 8 + size + size % 2;
    }
}

}  // namespace

std::string riffChunk(const std::string& id, const std::string& body) {
    return id + le32(uint32_t(body.size())) + body + std::string(body.size() % 2, '\0');
}

std::vector<WavCue> cuePoints(const FileHandle& file, const Walk& walk, int64_t lower, int64_t upper) {
    const Chunk* cue = find(walk.chunks, "cue ");
    if (!cue || walk.container == Container::w64) { return {}; }
    std::vector<WavCue> points = pointsOf(content(file, *cue, mostBytes), lower, upper);
    for (const Chunk& chunk : walk.chunks) {
        if (chunk.id != "LIST" || points.empty()) { continue; }
        const std::string list = content(file, chunk, mostBytes);
        if (list.starts_with("adtl")) { takeEntries(list, points); }
    }
    for (WavCue& point : points) { point.length = std::min(point.length, upper - lower - point.frame); }
    return points;
}

}  // namespace brindlehum::RIFFMeta
