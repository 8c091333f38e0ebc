// Finds the facts of streams that FFmpeg reads: coding, extent and channel layout.
#include "decode/ffmpeg_facts.h"

#include <algorithm>

#include "decode/encoder_delay.h"
#include "decode/mp4_track.h"
#include "decode/plausible.h"

namespace brindlehum {

namespace {

bool isLinear(AVCodecID id) {
    return id >= AV_CODEC_ID_FIRST_AUDIO && id < AV_CODEC_ID_ADPCM_IMA_QT;
}

bool isLogarithmic(AVCodecID id) {
    return id == AV_CODEC_ID_PCM_MULAW || id == AV_CODEC_ID_PCM_ALAW || id == AV_CODEC_ID_PCM_VIDC;
}

bool isFloatCoding(AVCodecID id) {
    return id == AV_CODEC_ID_PCM_F32BE || id == AV_CODEC_ID_PCM_F32LE || id == AV_CODEC_ID_PCM_F64BE ||
           id == AV_CODEC_ID_PCM_F64LE || id == AV_CODEC_ID_PCM_F16LE || id == AV_CODEC_ID_PCM_F24LE;
}

uint32_t formatID(AVCodecID id) {
    if (isLinear(id) && !isLogarithmic(id)) { return fourCC("lpcm"); }
    switch (id) {
        case AV_CODEC_ID_PCM_MULAW:
            return fourCC("ulaw");
        case AV_CODEC_ID_PCM_ALAW:
            return fourCC("alaw");
        case AV_CODEC_ID_MP3:
            return fourCC(".mp3");
        case AV_CODEC_ID_AAC:
            return fourCC("aac ");
        case AV_CODEC_ID_ALAC:
            return fourCC("alac");
        case AV_CODEC_ID_FLAC:
            return fourCC("flac");
        case AV_CODEC_ID_OPUS:
            return fourCC("opus");
        case AV_CODEC_ID_VORBIS:
            return fourCC("vorb");
        case AV_CODEC_ID_AC3:
            return fourCC("ac-3");
        case AV_CODEC_ID_EAC3:
            return fourCC("ec-3");
        default:
            return fourCC("????");
    }
}

// Decoders other than PCM reorder their channels to the order of the WAVE mask, so a speaker list in the container's
// own order would be wrong for their output. Ambisonic and discrete layouts stay as stated.
bool namesSpeakers(const ChannelLayout& layout) {
    const std::vector<uint32_t> labels = ChannelLabels::labels(layout);
    return !labels.empty() && std::ranges::all_of(labels, [](uint32_t label) { return label < 200; });
}

std::optional<ChannelLayout> layoutOf(const AVCodecParameters& parameters, std::optional<ChannelLayout> stated) {
    if (stated && (isLinear(parameters.codec_id) || !namesSpeakers(*stated))) { return stated; }
    const AVChannelLayout& native = parameters.ch_layout;
    const bool classic = native.order == AV_CHANNEL_ORDER_NATIVE && native.u.mask != 0 && native.u.mask >> 18 == 0;
    if (classic) { return ChannelLayout{ChannelLabels::useBitmap, uint32_t(native.u.mask), {}}; }
    return stated;
}

struct Extent {
    int64_t origin = 0;
    int64_t frames = 0;
};

std::optional<Extent> mp4Extent(const FFmpegInput& input, const FileHandle& file) {
    const AVDictionaryEntry* gapless = av_dict_get(input.metadata(), "iTunSMPB", nullptr, 0);
    if (const auto extent = gapless ? gaplessRecord(gapless->value) : std::nullopt) {
        // An edit list has already moved the delay to before time 0.
        return Extent{input.firstIndexedFrame() < 0 ? 0 : extent->delay, extent->frames};
    }
    if (const auto frames = mp4Frames(file, input.stream().id, input.sampleRate())) { return Extent{0, *frames}; }
    const int64_t duration = input.stream().duration;
    if (duration == AV_NOPTS_VALUE || duration <= 0) { return std::nullopt; }
    return Extent{0, input.toFrames(duration)};
}

std::optional<Extent> statedExtent(const FFmpegInput& input, const FileHandle& file) {
    std::optional<EncodedExtent> extent;
    if (input.isFormat("mp4")) { return mp4Extent(input, file); }
    if (input.isFormat("mp3")) { extent = mp3Extent(file); }
    if (input.isFormat("caf")) { extent = cafExtent(file); }
    return extent ? std::optional(Extent{extent->delay, extent->frames}) : std::nullopt;
}

}  // namespace

StreamFacts streamFacts(FFmpegInput& input, const FileHandle& file, Container container) {
    const AVCodecParameters& parameters = *input.stream().codecpar;
    std::optional<Extent> extent = statedExtent(input, file);
    if (!extent || !isPlausibleLength(extent->frames, file.size())) { extent = Extent{0, input.measureEnd()}; }
    const int channels = parameters.ch_layout.nb_channels;
    const auto stated =
        container == Container::mp4 ? mp4Layout(file, input.stream().id) : containerLayout(file, container, channels);
    const bool linear = isLinear(parameters.codec_id) && !isLogarithmic(parameters.codec_id);
    return {AudioFileFacts{formatID(parameters.codec_id), double(parameters.sample_rate), channels, extent->frames,
                           linear ? av_get_bits_per_sample(parameters.codec_id) : 0, isFloatCoding(parameters.codec_id),
                           layoutOf(parameters, stated)},
            extent->origin};
}

}  // namespace brindlehum
