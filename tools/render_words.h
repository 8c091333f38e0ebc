// The words of `render`, read into one request.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "audio/probe/audio_file_info.h"
#include "command.h"
#include "settings/output_profile.h"
#include "spatial/ambisonics.h"
#include "spatial/listen_mode.h"

namespace brindlehum::cli {

struct RenderRequest {
    std::filesystem::path file;
    std::filesystem::path out;
    OutputProfile profile;              // of speakers or headphones; stereo speakers by default
    std::optional<int> deviceChannels;  // absent: as many as the profile needs
    ListenMode listen = ListenMode::normal;
    std::optional<std::string> format;  // display name; absent: as detected
    Rotation rotation;
    bool monoToCenter = true;
    std::optional<double> rate;  // Hz; absent: the file's
    double gainDb = 0;
    int block = 256;           // frames of a device block
    double from = 0;           // seconds of the file
    std::optional<double> to;  // seconds of the file; absent: its end
};

// Throws UsageError naming the word that can't be understood.
RenderRequest readRenderWords(Words words);

// The smallest device that holds every output of the profile.
int neededChannels(const OutputProfile& profile);

// The format of that display name, in any case, among those offered for the channel count and the detected one. Throws
// Error naming the choices.
SourceFormat chooseFormat(const AudioFileInfo& info, const std::optional<std::string>& name);

}  // namespace brindlehum::cli
