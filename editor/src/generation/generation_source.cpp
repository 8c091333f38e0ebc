// Reads the editor's models.
#include "editor/generation/generation_source.h"

#include <algorithm>

#include "editor/music/music_model.h"

namespace brindlehum {

std::optional<GenerationSource> generationSource(const DocumentModel& document, const MusicModel& music) {
    const auto& doc = document.doc();
    const auto& analysis = music.analysis();
    const auto& pins = music.pins();
    if (!doc || !analysis || !pins || music.isStale()) { return std::nullopt; }
    const std::string mode = analysis->key.mode == "minor" ? "m" : "";
    return GenerationSource{doc->url,
                            document.sound(),
                            doc->sampleRate,
                            analysis->grid.bpm,
                            analysis->grid.beatsPerBar,
                            analysis->key.tonic + mode,
                            music.frame(pins->loopStart),
                            music.frame(pins->loopEnd),
                            music.frame(pins->musicEnd)};
}

std::optional<AacClip::Range> clipOf(const GenerationSource& source, GenerationKind kind) {
    if (kind == GenerationKind::intro) { return std::nullopt; }
    if (kind == GenerationKind::variation) {
        return AacClip::taken(source.loopStart, source.loopEnd, source.sampleRate);
    }
    const auto minute = int64_t(60 * source.sampleRate);
    return AacClip::taken(std::max<int64_t>(source.musicEnd - minute, 0), source.musicEnd, source.sampleRate);
}

}  // namespace brindlehum
