// Saves a document block by block.
#include "editor/document/save_document.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <optional>

#include "audio/speakers/channel_layout.h"
#include "audio/write/wav_file_writer.h"
#include "base/file_handle.h"
#include "base/file_replacement.h"
#include "base/number_text.h"
#include "base/path.h"
#include "editor/document/edit_commands.h"

namespace brindlehum {
namespace {

constexpr int64_t blockFrames = 65536;

WavNotes notesOf(const SavedSound& saved) {
    WavNotes notes = noted(saved.notes, saved.content.marks);
    notes.description = "Edited in Brindlehum from " + printableName(saved.url);
    return notes;
}

}  // namespace

uint32_t channelMask(const SourceFormat& source, int channels) {
    const SpeakerList* list = source.asSpeakers();
    if (!list || int(list->size()) != channels) { return 0; }
    if (*list == SpeakerList{SpeakerID::C}) { return 4; }
    if (*list == SpeakerList{SpeakerID::L, SpeakerID::R}) { return 3; }
    const auto mask = WaveMask::mask(*list);
    return mask ? mask->mask : 0;
}

SaveResult saveDocument(const std::filesystem::path& path, const SavedSound& saved,
                        const std::function<bool(double)>& progress) {
    const Sound& sound = saved.content.sound;
    std::optional<FileHandle> old;
    std::error_code none;
    if (std::filesystem::symlink_status(path, none).type() == std::filesystem::file_type::regular) {
        old.emplace(path);
    }
    const auto file = old ? std::make_unique<FileReplacement>(path, *old) : std::make_unique<FileReplacement>(path);
    file->reserve(uint64_t(sound.frames()) * uint64_t(sound.channels() * bytesOf(saved.samples)));
    WavFileWriter writer(file->sink(),
                         {saved.sampleRate, sound.channels(), channelMask(saved.info.detected, sound.channels()),
                          saved.samples, notesOf(saved)});
    for (int64_t at = 0; at < sound.frames(); at += blockFrames) {
        const int64_t count = std::min(blockFrames, sound.frames() - at);
        const auto block = sound.gather(at, at + count);
        std::vector<const float*> planes;
        for (const auto& x : block) { planes.push_back(x.data()); }
        writer.append(planes, count);
        if (!progress(double(at + count) / double(sound.frames()))) { return {}; }
    }
    writer.finish();
    file->commit();
    const float peak = peakOf(sound, {0, sound.frames()});
    if (peak <= 1 || saved.samples == WavSamples::float32) { return {true, ""}; }
    return {true, " · peaks " + fixed(20 * std::log10(double(peak)), 1) + " dB above full scale were clipped"};
}

}  // namespace brindlehum
