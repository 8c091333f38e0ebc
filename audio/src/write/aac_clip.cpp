// AacClip over FFmpeg's AAC encoder and its MP4 writer.
#include "audio/write/aac_clip.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "audio/stream/sample_source.h"
#include "base/error.h"
#include "decode/ffmpeg_input.h"
#include "dsp/resampler.h"
#include "dsp/signal.h"

extern "C" {
#include <libavutil/opt.h>
}

namespace brindlehum::AacClip {
namespace {

constexpr int blockFrames = 32768;
constexpr int fallbackRate = 48000;  // Hz

[[noreturn]] void fail() {
    throw Error(ErrorKind::clipFormat, "The sound can't be encoded for the service");
}

// For calls that return a negative number on a failure.
void require(int result) {
    if (result < 0) { fail(); }
}

// A file that grows in memory.
struct OutputFreer {
    void operator()(AVFormatContext* context) const {
        if (context->pb) {
            uint8_t* bytes = nullptr;
            avio_close_dyn_buf(context->pb, &bytes);
            av_free(bytes);
        }
        avformat_free_context(context);
    }
};
using OutputPtr = std::unique_ptr<AVFormatContext, OutputFreer>;

int rateFor(const AVCodec& codec, double sampleRate) {
    for (const int* rate = codec.supported_samplerates; rate && *rate != 0; ++rate) {
        if (*rate == sampleRate) { return *rate; }
    }
    return fallbackRate;
}

// The stretch in two channels, at the rate of the clip.
class StereoFrames {
public:
    StereoFrames(SampleSource& samples, Range range, int rate)
        : samples_(samples), range_(range), planes_(size_t(samples.channels())) {
        if (samples.sampleRate() != rate) { resampler_.emplace(samples.sampleRate(), double(rate), channels); }
    }
    // Fills up to `frames` frames; fewer only at the end.
    int read(float* const* out, int frames) {
        const auto pull = [this](int limit, const float** planes) { return next(limit, planes); };
        if (resampler_) { return resampler_->process(out, frames, pull); }
        int done = 0;
        while (done < frames) {
            std::array<const float*, channels> planes{};
            const int count = next(frames - done, planes.data());
            if (count == 0) { break; }
            for (size_t c = 0; c < channels; ++c) { std::copy_n(planes[c], count, out[c] + done); }
            done += count;
        }
        return done;
    }

private:
    static constexpr int channels = 2;
    int next(int limit, const float** planes) {
        const auto left = int(std::min<int64_t>({limit, blockFrames, range_.end - range_.start}));
        const int count = left < 1 ? 0 : samples_.read(range_.start, left, planes_.data());
        range_.start += count;
        for (size_t c = 0; c < channels; ++c) {
            const float* plane = planes_[std::min(c, planes_.size() - 1)];
            // The encoder refuses what isn't a number.
            planes[c] = Signal::usable({plane, size_t(count)}, usable_[c]).data();
        }
        return count;
    }

    SampleSource& samples_;
    Range range_;
    std::vector<const float*> planes_;
    std::array<std::vector<float>, channels> usable_;
    std::optional<Resampler> resampler_;
};

class Encoder {
public:
    explicit Encoder(double sampleRate) : codec_(avcodec_find_encoder(AV_CODEC_ID_AAC)) {
        if (!codec_) { fail(); }
        av_log_set_level(AV_LOG_QUIET);
        rate_ = rateFor(*codec_, sampleRate);
        context_.reset(avcodec_alloc_context3(codec_));
        AVFormatContext* output = nullptr;
        require(avformat_alloc_output_context2(&output, nullptr, "ipod", nullptr));
        output_.reset(output);
        require(avio_open_dyn_buf(&output_->pb));
        openCodec();
        stream_ = avformat_new_stream(output_.get(), nullptr);
        if (!stream_) { fail(); }
        require(avcodec_parameters_from_context(stream_->codecpar, context_.get()));
        stream_->time_base = {1, rate_};
        output_->flags |= AVFMT_FLAG_BITEXACT;  // says nothing of the time or of the writer
        require(avformat_write_header(output_.get(), nullptr));
    }

    int rate() const { return rate_; }
    int frameSize() const { return context_->frame_size; }

    // The planes hold up to frameSize() frames; fewer in the last call alone.
    void append(const std::array<std::vector<float>, 2>& planes, int frames) {
        FramePtr frame(av_frame_alloc());
        frame->format = context_->sample_fmt;
        frame->nb_samples = frames;
        frame->sample_rate = rate_;
        require(av_channel_layout_copy(&frame->ch_layout, &context_->ch_layout));
        require(av_frame_get_buffer(frame.get(), 0));
        for (size_t c = 0; c < planes.size(); ++c) {
            std::copy_n(planes[c].data(), frames, reinterpret_cast<float*>(frame->extended_data[c]));
        }
        frame->pts = position_;
        position_ += frames;
        send(frame.get());
    }

    std::string finish() {
        send(nullptr);
        require(av_write_trailer(output_.get()));
        uint8_t* bytes = nullptr;
        const int size = avio_close_dyn_buf(std::exchange(output_->pb, nullptr), &bytes);
        const std::unique_ptr<uint8_t, decltype(&av_free)> owned(bytes, &av_free);
        return {reinterpret_cast<const char*>(bytes), size_t(std::max(size, 0))};
    }

private:
    void openCodec() {
        context_->sample_rate = rate_;
        context_->sample_fmt = AV_SAMPLE_FMT_FLTP;
        context_->bit_rate = std::min<int64_t>(bitsPerSecond, int64_t(rate_) * 12);
        av_channel_layout_default(&context_->ch_layout, 2);
        context_->time_base = {1, rate_};
        context_->flags |= AV_CODEC_FLAG_GLOBAL_HEADER | AV_CODEC_FLAG_BITEXACT;
        // At this bit rate the tools that save bits cost half the time and add nothing.
        for (const char* tool : {"aac_ms", "aac_is", "aac_pns", "aac_tns"}) {
            av_opt_set_int(context_->priv_data, tool, 0, 0);
        }
        av_opt_set(context_->priv_data, "aac_coder", "fast", 0);
        require(avcodec_open2(context_.get(), codec_, nullptr));
    }

    void send(const AVFrame* frame) {
        require(avcodec_send_frame(context_.get(), frame));
        const PacketPtr packet(av_packet_alloc());
        while (avcodec_receive_packet(context_.get(), packet.get()) == 0) {
            packet->stream_index = stream_->index;
            av_packet_rescale_ts(packet.get(), context_->time_base, stream_->time_base);
            require(av_write_frame(output_.get(), packet.get()));
            av_packet_unref(packet.get());
        }
    }

    const AVCodec* codec_;
    int rate_ = 0;
    CodecContextPtr context_;
    OutputPtr output_;
    AVStream* stream_ = nullptr;
    int64_t position_ = 0;  // frames sent
};

}  // namespace

Range taken(int64_t start, int64_t end, double sampleRate) {
    return {std::max(end - int64_t(longest * sampleRate), start), end};
}

std::string encode(SampleSource& samples, int64_t start, int64_t end, const std::function<bool()>& isStopped) {
    const Range range = taken(start, end, samples.sampleRate());
    if (samples.channels() < 1 || range.start < 0 || range.end <= range.start) { fail(); }
    Encoder encoder(samples.sampleRate());
    StereoFrames frames(samples, range, encoder.rate());
    const int size = encoder.frameSize();
    std::array<std::vector<float>, 2> planes;
    for (auto& plane : planes) { plane.resize(size_t(size)); }
    float* const out[] = {planes[0].data(), planes[1].data()};
    for (int64_t sent = 0;; sent += size) {
        if (isStopped && sent % blockFrames == 0 && isStopped()) { return {}; }
        const int count = frames.read(out, size);
        if (count > 0) { encoder.append(planes, count); }
        if (count < size) { return encoder.finish(); }
    }
}

}  // namespace brindlehum::AacClip
