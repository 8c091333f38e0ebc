// Reads the words of `render` into one request.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "audio/probe/audio_file_info.h"
#include "command.h"
#include "settings/output_profile.h"
#include "spatial/ambisonics.h"
#include "spatial/listen_mode.h"
#include "upmix/upmix_params.h"

namespace brindlehum::cli {

struct RenderRequest {
    std::filesystem::path file;
    std::filesystem::path out;
    OutputProfile profile;              // speakers or headphones; stereo speakers by default
    std::optional<int> deviceChannels;  // absent: the number that the profile needs
    ListenMode listen = ListenMode::normal;
    std::optional<std::string> format;  // display name; absent: the detected format
    Rotation rotation;
    std::optional<UpmixSettings> upmix;
    bool monoToCenter = true;
    std::optional<double> rate;  // Hz; absent: the file's rate
    double gainDb = 0;
    int block = 256;           // frames per device block
    double from = 0;           // seconds of the file
    std::optional<double> to;  // seconds of the file; absent: its end
};

// Throws UsageError, which names the word that can't be understood.
RenderRequest readRenderWords(Words words);

// The channels of the smallest device that has every output of the profile.
int neededChannels(const OutputProfile& profile);

// The format with that display name, ignoring case, among the detected one and those offered for the channel count.
// Throws Error, which names the choices.
SourceFormat chooseFormat(const AudioFileInfo& info, const std::optional<std::string>& name);

}  // namespace brindlehum::cli
