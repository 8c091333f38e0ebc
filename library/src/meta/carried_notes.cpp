// CarriedNotes: collects from the chunks of a WAVE file, and from MetaIO for any file.
#include "library/meta/carried_notes.h"

#include <array>
#include <string>
#include <string_view>

#include "base/error.h"
#include "base/text.h"
#include "library/meta/meta_io.h"
#include "meta/cue_points.h"
#include "meta/ixml.h"
#include "meta/riff_walk.h"

namespace brindlehum {
namespace {

using namespace RIFFMeta;

constexpr uint64_t mostBytes = 1 << 20;  // of a chunk; a larger one is cut

std::string fieldOf(const std::string& bext, size_t at, size_t length) {
    if (at >= bext.size()) { return {}; }
    const std::string field = bext.substr(at, length);
    return repairUtf8(field.substr(0, field.find('\0')));
}

// EBU Tech 3285: offsets in the chunk.
void takeBext(const std::string& bext, int64_t lower, WavNotes& notes) {
    constexpr size_t shortest = 348;  // up to the version
    if (bext.size() < shortest) { return; }
    if (const std::string originator = fieldOf(bext, 256, 32); !originator.empty()) { notes.originator = originator; }
    notes.originatorReference = fieldOf(bext, 288, 32);
    notes.date = fieldOf(bext, 320, 10);
    notes.time = fieldOf(bext, 330, 8);
    notes.timeReference = readLE(bext.data() + 338, 8) + uint64_t(lower);
    notes.codingHistory = fieldOf(bext, 602, bext.size());
}

// The elements that tell where in a production a recording belongs, without those of its tracks and its file.
std::string productionOf(std::string document) {
    static constexpr std::array names = {"PROJECT", "SCENE", "TAKE", "TAPE", "CIRCLED", "NOTE", "UBITS"};
    const size_t user = document.find("<USER>");
    if (user != std::string::npos) {
        const size_t end = document.find("</USER>", user);
        document.erase(user, end == std::string::npos ? end : end - user);
    }
    std::string kept;
    for (const std::string name : names) {
        const std::string open = "<" + name + ">";
        const std::string close = "</" + name + ">";
        const size_t start = document.find(open);
        const size_t end = start == std::string::npos ? start : document.find(close, start);
        if (end != std::string::npos) { kept += document.substr(start, end + close.size() - start); }
    }
    return kept;
}

// Whether there is more than a name made of the file's own.
bool saysSomething(SoundMeta meta) {
    meta.fxName.clear();
    return meta != SoundMeta();
}

std::string ixmlOf(const SoundMeta& meta, const std::string& production) {
    if (!saysSomething(meta) && production.empty()) { return {}; }
    std::string document = withUserBlock({}, meta);
    document.insert(document.find("<USER>"), production);
    return riffChunk("iXML", document);
}

}  // namespace

WavNotes carriedNotes(const std::filesystem::path& source, int64_t lower, int64_t upper) {
    WavNotes notes;
    try {
        std::string production;
        const FileHandle file(source);
        if (const auto walked = walk(file)) {
            const auto contentOf = [&](std::string_view id) {
                const Chunk* chunk = find(walked->chunks, id);
                return chunk ? content(file, *chunk, mostBytes) : std::string();
            };
            takeBext(contentOf("bext"), lower, notes);
            production = productionOf(repairUtf8(contentOf("iXML")));
            notes.cues = cuePoints(file, *walked, lower, upper);
        }
        notes.chunks = ixmlOf(MetaIO::read(source), production);
    } catch (const Error&) { return notes; }
    return notes;
}

}  // namespace brindlehum
