// Writes a document as a WAVE file.
#pragma once

#include <filesystem>
#include <functional>
#include <string>

#include "audio/write/wav_form.h"
#include "editor/document/document_model.h"

namespace brindlehum {

struct SavedSound {
    std::filesystem::path url;  // of the file that was opened
    AudioFileInfo info;
    double sampleRate = 0;  // Hz
    Sound sound;
    WavSamples samples = WavSamples::pcm24Lossless;
};

struct SaveResult {
    bool isWritten = false;  // false: stopped, and nothing has changed
    std::string note;        // what the user must know: clipped peaks; begins with a separator, or is empty
};

// The dwChannelMask for a document of this source: 0 where its channels have no place in a mask.
uint32_t channelMask(const SourceFormat& source, int channels);

// Writes the samples beside the target and swaps them in. `progress` gets the share written, 0 to 1, and returns
// false to stop. Blocking I/O; throws Error.
SaveResult saveDocument(const std::filesystem::path& path, const SavedSound& saved,
                        const DocumentModel::CarryMetadata& carry, const std::function<bool(double)>& progress);

}  // namespace brindlehum
