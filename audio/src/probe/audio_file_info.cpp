// AudioFileInfo: the probe, and its one-line summary.
#include "audio/probe/audio_file_info.h"

#include <algorithm>

#include "audio/decode/audio_file.h"
#include "audio/probe/format_detector.h"
#include "base/number_text.h"
#include "base/text.h"
#include "decode/open_audio_file.h"
#include "probe/bext_description.h"

namespace brindlehum {

namespace {

std::string codecName(uint32_t formatID) {
    switch (formatID) {
        case fourCC("lpcm"):
            return "PCM";
        case fourCC(".mp3"):
            return "MP3";
        case fourCC("aac "):
            return "AAC";
        case fourCC("alac"):
            return "ALAC";
        case fourCC("flac"):
            return "FLAC";
        case fourCC("vorb"):
            return "Vorbis";
        case fourCC("opus"):
            return "Opus";
        default:
            return "Compressed";
    }
}

}  // namespace

bool AudioFileInfo::isAudioPath(const std::filesystem::path& path) {
    const std::string extension = lowerAscii(path.extension().string());
    return !extension.empty() &&
           std::ranges::find(audioExtensions, std::string_view(extension).substr(1)) != audioExtensions.end();
}

AudioFileInfo AudioFileInfo::load(const std::filesystem::path& url, const std::function<bool()>& stop) {
    const auto handle = std::make_shared<FileHandle>(url);
    const AudioFileFacts facts = openAudioFile(handle, url, stop)->facts();
    AudioFileInfo info;
    info.url = url;
    info.sampleRate = facts.sampleRate;
    info.channels = facts.channels;
    info.frames = facts.frames;
    info.bitDepth = facts.bitDepth;
    info.isFloat = facts.isFloat;
    info.codec = codecName(facts.formatID);
    info.labels = ChannelLabels::labels(facts.layout);
    info.detected = FormatDetector::detect(url, info.channels, info.labels, facts.layout ? facts.layout->tag : 0);
    info.bextDescription = brindlehum::bextDescription(*handle, url);
    return info;
}

std::string AudioFileInfo::summary() const {
    const std::string depth = std::to_string(bitDepth) + (isFloat ? "-bit float" : "-bit");
    const std::string count = channels == 1 ? "mono" : std::to_string(channels) + " ch";
    return kilohertzText(sampleRate) + " · " + (codec == "PCM" ? depth : codec) + " · " + count;
}

}  // namespace brindlehum
