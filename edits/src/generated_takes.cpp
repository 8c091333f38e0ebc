// Reads a take in blocks and writes its two forms.
#include "edits/generated_takes.h"

#include <algorithm>
#include <memory>
#include <optional>

#include "audio/stream/sample_source.h"
#include "audio/write/wav_file_writer.h"
#include "base/error.h"
#include "base/file_replacement.h"
#include "base/path.h"
#include "base/text.h"
#include "channel_mask.h"
#include "edits/transition_trim.h"
#include "edits_record.h"

namespace brindlehum::GeneratedTakes {
namespace {

namespace fs = std::filesystem;
using Channels = std::vector<std::vector<float>>;

constexpr int blockFrames = 65536;
constexpr int mostNumbers = 10000;
constexpr size_t longestBase = 180;  // bytes, so that the longest name of a take still is one

struct Names {
    std::string full;
    std::string trimmed;  // empty for a variation
};

Names namesOf(const Take& take, int number) {
    std::string base = take.source.stem().string();
    if (base.size() > longestBase) { base = cutUtf8(repairUtf8(base), longestBase); }
    const std::string stem = base + " - " + title(take.kind) + " " + std::to_string(number);
    return {stem + " (full take).wav", take.kind == GenerationKind::variation ? "" : stem + ".wav"};
}

bool isFree(const Take& take, const Names& names) {
    const auto exists = [&](const std::string& name) {
        std::error_code error;
        return !name.empty() && fs::symlink_status(take.folder / name, error).type() != fs::file_type::not_found;
    };
    return !exists(names.full) && !exists(names.trimmed);
}

std::string description(const Take& take, bool isFull) {
    const std::string start = std::string("Brindlehum Loomcraft ") + rawValue(take.kind);
    const std::string piece = " for " + take.source.stem().string();
    return repairUtf8(isFull ? start + " take" + piece : start + piece + ", trimmed");
}

// Reads frames of the take one block after another; `use` returns false to end it.
template <class Use>
void readBlocks(SampleSource& samples, int64_t from, int64_t end, Use use) {
    std::vector<const float*> planes(size_t(samples.channels()));
    while (from < end) {
        const int count = samples.read(from, int(std::min<int64_t>(blockFrames, end - from)), planes.data());
        if (count == 0 || !use(planes, count)) { return; }
        from += count;
    }
}

std::unique_ptr<FileReplacement> written(const Take& take, const std::string& name, SampleSource& samples,
                                         const std::stop_token& stop) {
    auto file = std::make_unique<FileReplacement>(take.folder / name, FileReplacement::Options{.isNew = true});
    WavFileWriter writer(file->sink(), samples.sampleRate(), samples.channels(),
                         channelMask(size_t(samples.channels())), description(take, true));
    readBlocks(samples, 0, samples.frames(), [&](const auto& planes, int count) {
        writer.append(planes, count);
        return !stop.stop_requested();
    });
    writer.finish(true);
    return file;
}

Channels gathered(SampleSource& samples, int64_t from, int64_t end) {
    Channels out(size_t(samples.channels()));
    readBlocks(samples, from, end, [&](const auto& planes, int count) {
        for (size_t c = 0; c < out.size(); ++c) { out[c].insert(out[c].end(), planes[c], planes[c] + count); }
        return true;
    });
    return out;
}

std::unique_ptr<FileReplacement> writtenTrimmed(const Take& take, const std::string& name, SampleSource& samples) {
    const bool isIntro = take.kind == GenerationKind::intro;
    const double length = isIntro ? 5 * take.barSeconds : 15;
    const double fade = isIntro ? take.barSeconds / 4 : 1;
    const double rate = samples.sampleRate();
    const int64_t kept = std::min(samples.frames(), int64_t(length * rate));
    const int64_t from = isIntro ? 0 : samples.frames() - kept;
    const Channels trimmed = transitionTrim(gathered(samples, from, from + kept), rate, isIntro, length, fade);
    auto file = std::make_unique<FileReplacement>(take.folder / name, FileReplacement::Options{.isNew = true});
    WavFileWriter writer(file->sink(), rate, samples.channels(), channelMask(trimmed.size()), description(take, false));
    writer.appendAll(trimmed);
    writer.finish(true);
    return file;
}

void prepare(const Take& take) {
    createFolders(take.folder);
    FileReplacement::clearLeftovers(take.folder);
    // A folder that nothing was written to yet belongs to this piece from now on.
    EditsRecord record(take.folder);
    if (!record.source()) { record.begin(take.source); }
}

// A take in an unnamed file: errors name it by its number.
std::unique_ptr<FileSamples> opened(const Take& take) {
    const std::string name = "Take " + std::to_string(take.number);
    try {
        auto samples = std::make_unique<FileSamples>(take.audio);
        if (double(samples->frames()) <= longest * samples->sampleRate()) { return samples; }
    } catch (const std::exception& error) { throw Error(name + " can't be read: " + reasonOf(take.audio, error)); }
    throw Error(name + " is longer than 30 minutes");
}

}  // namespace

void write(const Take& take, std::vector<fs::path>& done, const std::stop_token& stop) {
    const auto samples = opened(take);
    prepare(take);
    const Names first = namesOf(take, take.number);
    const auto full = written(take, first.full, *samples, stop);
    const auto trimmed =
        first.trimmed.empty() || stop.stop_requested() ? nullptr : writtenTrimmed(take, first.trimmed, *samples);
    if (stop.stop_requested()) { return; }
    int number = take.number;
    const auto place = [&](FileReplacement& file, std::string Names::*which) {
        for (; number < mostNumbers; ++number) {
            const std::string name = namesOf(take, number).*which;
            if (file.commitNew(name)) { return done.push_back(take.folder / name); }
        }
        throw Error(writeFailure(take.folder / (first.*which), "there are too many files of this name"));
    };
    while (number < mostNumbers && !isFree(take, namesOf(take, number))) { ++number; }
    place(*full, &Names::full);
    if (trimmed) { place(*trimmed, &Names::trimmed); }
}

}  // namespace brindlehum::GeneratedTakes
