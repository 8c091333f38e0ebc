// render FILE OUT.wav: renders a file through MixBuilder and the device's render context into a WAV file.
#include <cmath>
#include <limits>

#include "audio/speakers/channel_layout.h"
#include "audio/stream/file_source.h"
#include "base/error.h"
#include "base/stored_path.h"
#include "command.h"
#include "float_wav.h"
#include "format_json.h"
#include "mix/config/mix_builder.h"
#include "mix/render/offline_render.h"
#include "render_words.h"

namespace brindlehum::cli {
namespace {

// The channel mask for a device whose channels are the profile's speakers in an order that WAVE allows.
uint32_t channelMask(const OutputProfile& profile, int deviceChannels) {
    const bool headphones = profile.kind == OutputProfile::Kind::headphones;
    const SpeakerList& list = speakers(headphones ? LayoutID::stereo : profile.layout);
    if (size_t(deviceChannels) != list.size()) { return 0; }
    for (size_t i = 0; i < std::min(profile.outputs.size(), list.size()); ++i) {
        if (profile.outputs[i] != int(i)) { return 0; }
    }
    const auto mask = WaveMask::mask(list);
    return mask && mask->order == list ? mask->mask : 0;
}

// The part of the file to render, in its frames.
struct Part {
    int64_t start;
    int64_t end;
};

Part partOf(const AudioFileInfo& info, const RenderRequest& request) {
    const auto frameAt = [&](double seconds) {
        return int64_t(std::min(std::round(seconds * info.sampleRate), double(info.frames)));
    };
    const Part part = {frameAt(request.from), request.to ? frameAt(*request.to) : info.frames};
    if (part.start >= part.end) { throw Error("There is nothing between from and to"); }
    return part;
}

// Rate conversion may round the length by one frame; a shorter result means that the file broke off.
void checkLength(int64_t streamed, const Part& part, double ratio) {
    if (double(streamed) + 1.5 < double(part.end - part.start) * ratio) {
        throw Error("The file broke off while it was read");
    }
}

void renderFile(const RenderRequest& request) {
    const AudioFileInfo info = AudioFileInfo::load(request.file);
    std::error_code none;
    if (std::filesystem::equivalent(request.file, request.out, none)) {
        throw Error("The output would replace the file that it is made from");
    }
    const SourceFormat format = chooseFormat(info, request.format);
    const Part part = partOf(info, request);
    const double rate = request.rate.value_or(info.sampleRate);
    const int deviceChannels = request.deviceChannels.value_or(neededChannels(request.profile));
    const MixConfig config = MixBuilder::config(format, info.channels, request.profile, deviceChannels, request.listen,
                                                request.rotation, request.monoToCenter, request.upmix);
    if (request.upmix && !config.upmix) {
        throw Error("An upmix of " + format.displayName() + " would fill no speaker of this layout");
    }
    if (config.upmix && request.listen != ListenMode::normal) { throw Error("listen has no effect on an upmix"); }

    auto reader = std::make_shared<StreamReader>(std::make_unique<FileSource>(request.file), rate, part.start, part.end,
                                                 false, 0, 0);
    OfflineRender offline(config, std::move(reader), rate, deviceChannels, request.block,
                          std::pow(10.0, request.gainDb / 20));
    FloatWav wav(request.out, deviceChannels, rate, channelMask(request.profile, deviceChannels));
    while (const int frames = offline.next()) { wav.write(offline.planes(), frames); }
    checkLength(offline.streamedFrames(), part, rate / info.sampleRate);
    wav.commit();

    print({
        {"url", storedPath(request.file)},
        {"out", storedPath(request.out)},
        {"format", toJson(format)},
        {"sampleRate", rate},
        {"channels", deviceChannels},
        {"frames", wav.frames()},
        {"seconds", double(wav.frames()) / rate},
        {"rows", config.rows},
        {"inChannels", config.inChannels},
        {"toBinaural", config.toBinaural},
    });
}

}  // namespace

bool render(Words words) {
    const RenderRequest request = readRenderWords(words);
    return eachFile(words.first(1), [&](const std::string&) { renderFile(request); });
}

}  // namespace brindlehum::cli
