// GenerationSource: what a generation needs of the piece in the editor, and which part of it leaves the machine.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "audio/write/aac_clip.h"
#include "dsp/sound.h"
#include "edits/generation_protocol.h"

namespace brindlehum {

class DocumentModel;
class MusicModel;

struct GenerationSource {
    std::filesystem::path file;
    Sound sound;
    double sampleRate = 0;  // Hz
    double bpm = 0;
    int beatsPerBar = 4;
    std::string key;        // "F#m"
    int64_t loopStart = 0;  // frames
    int64_t loopEnd = 0;
    int64_t musicEnd = 0;

    double barSeconds() const { return 60 / bpm * beatsPerBar; }
};

// None without a document, its analysis or its pins.
std::optional<GenerationSource> generationSource(const DocumentModel& document, const MusicModel& music);

// The part that is uploaded: of an ending the last minute of the music, of a variation the loop, up to 170 s of either,
// of an intro nothing.
std::optional<AacClip::Range> clipOf(const GenerationSource& source, GenerationKind kind);

}  // namespace brindlehum
