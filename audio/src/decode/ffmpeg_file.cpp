// Decodes through libavcodec and puts every frame at its exact place.
#include "decode/ffmpeg_file.h"

#include <algorithm>
#include <cstdlib>

#include "base/error.h"
#include "decode/ffmpeg_facts.h"
#include "decode/ffmpeg_input.h"
#include "decode/ffmpeg_samples.h"

namespace brindlehum {

namespace {

// Frames to decode before the target of a seek. Measured needs: 2700 for MP3's bit reservoir, 4800 for AAC's overlap,
// none for lossless coders.
constexpr int64_t lossyPreroll = 16000;
constexpr int64_t unknown = -1;

bool isLossless(AVCodecID id) {
    const AVCodecDescriptor* descriptor = avcodec_descriptor_get(id);
    return descriptor && !(descriptor->props & AV_CODEC_PROP_LOSSY);
}

class FFmpegFile : public AudioFile {
public:
    FFmpegFile(std::unique_ptr<FFmpegInput> input, CodecContextPtr decoder, StreamFacts facts)
        : input_(std::move(input)),
          decoder_(std::move(decoder)),
          packet_(av_packet_alloc()),
          frame_(av_frame_alloc()),
          origin_(facts.origin),
          preroll_(isLossless(decoder_->codec_id) ? 0 : lossyPreroll) {
        facts_ = std::move(facts.facts);
        input_->rewind();
    }

    int read(float* const* planes, int64_t position, int frames) override {
        if (position < 0 || position >= facts_.frames || frames <= 0) { return 0; }
        const int wanted = int(std::min<int64_t>(frames, facts_.frames - position));
        if (position != next_ && !goTo(position)) { return 0; }
        int done = 0;
        while (done < wanted && holdFrameAt(position + done)) {
            done += copyFrom(planes, position + done, wanted - done, done);
        }
        next_ = position + done;
        if (done < wanted && input_->hadReadError()) { throw Error("the file can't be read any further"); }
        return done;
    }

private:
    // The current decoded frame covers frameStart_ to frameEnd(), both in frames of the piece.
    int64_t frameEnd() const { return frameStart_ + frame_->nb_samples; }

    // Decodes until the current frame reaches past `position`; returns false when the data ends first.
    bool holdFrameAt(int64_t position) {
        while (!frameHeld_ || frameEnd() <= position) {
            if (!decodeNext()) { return false; }
        }
        return true;
    }

    int copyFrom(float* const* planes, int64_t position, int count, int at) {
        if (frameStart_ > position) {  // packets are missing here: silence keeps the later frames in place
            const int silent = int(std::min<int64_t>(count, frameStart_ - position));
            for (int c = 0; c < facts_.channels; ++c) { std::fill_n(planes[c] + at, silent, 0.0F); }
            return silent;
        }
        const int copied = int(std::min<int64_t>(count, frameEnd() - position));
        if (!toPlanes(*frame_, int(position - frameStart_), copied, planes, facts_.channels, at)) {
            for (int c = 0; c < facts_.channels; ++c) { std::fill_n(planes[c] + at, copied, 0.0F); }
        }
        return copied;
    }

    // Decodes through a short step forward and seeks for any other step. When the format lands past the target, seeks
    // again with a longer lead, and finally from the start.
    bool goTo(int64_t position) {
        if (frameHeld_ && position >= frameStart_ && position < frameEnd() + preroll_) { return true; }
        for (const int64_t lead : {preroll_, 16 * lossyPreroll, position + origin_ + lossyPreroll}) {
            const int64_t target = position + origin_ - lead;
            if (!(target > 0 ? moveTo(target) : restart())) { continue; }
            if (decodeNext() && (frameStart_ <= std::max<int64_t>(0, position - preroll_) || target <= 0)) {
                return true;
            }
        }
        return false;
    }

    bool moveTo(int64_t target) {
        avcodec_flush_buffers(decoder_.get());
        forgetPlace();
        return input_->seek(target);
    }

    // A flush leaves the last block's overlap in the AAC decoder, so the start needs a new decoder.
    bool restart() {
        CodecContextPtr fresh = openDecoder(input_->stream());
        if (!fresh) { return false; }
        decoder_ = std::move(fresh);
        forgetPlace();
        return input_->rewind();
    }

    void forgetPlace() {
        frameHeld_ = false;
        draining_ = false;
        expected_ = unknown;
    }

    // Decodes the next frame into frame_ and its place into frameStart_. Skips packets that don't decode.
    bool decodeNext() {
        frameHeld_ = false;
        for (;;) {
            const int result = avcodec_receive_frame(decoder_.get(), frame_.get());
            if (result >= 0) {
                if (frame_->nb_samples <= 0) { continue; }
                placeFrame();
                return frameHeld_ = true;
            }
            if (result != AVERROR(EAGAIN)) {
                if (draining_ || result == AVERROR_EOF) { return false; }
            }
            if (draining_) { return false; }
            if (!input_->read(*packet_)) {
                draining_ = true;
                avcodec_send_packet(decoder_.get(), nullptr);
                continue;
            }
            avcodec_send_packet(decoder_.get(), packet_.get());
            av_packet_unref(packet_.get());
        }
    }

    // Packet times may be rounded to a coarse time base. While they agree with the frame count to within that rounding,
    // the count is used.
    void placeFrame() {
        const int64_t rounding = std::max<int64_t>(1, input_->toFrames(1) + 1);
        int64_t start = expected_;
        if (frame_->best_effort_timestamp != AV_NOPTS_VALUE) {
            const int64_t stated = input_->toFrames(frame_->best_effort_timestamp) - origin_;
            if (expected_ == unknown || std::abs(stated - expected_) > rounding) { start = stated; }
        } else if (expected_ == unknown) {
            start = -origin_;
        }
        frameStart_ = start;
        expected_ = start + frame_->nb_samples;
    }

    std::unique_ptr<FFmpegInput> input_;
    CodecContextPtr decoder_;
    PacketPtr packet_;
    FramePtr frame_;
    int64_t origin_;
    int64_t preroll_;
    int64_t next_ = 0;  // frame at which a consecutive read would continue
    int64_t frameStart_ = 0;
    int64_t expected_ = unknown;  // place of the next decoded frame, by counting
    bool frameHeld_ = false;
    bool draining_ = false;
};

}  // namespace

std::unique_ptr<AudioFile> openWithFFmpeg(const std::shared_ptr<FileHandle>& handle, Container container,
                                          bool trustWeakEvidence, const std::function<bool()>& stop) {
    constexpr int maxChannels = 1024;
    std::unique_ptr<FFmpegInput> input = FFmpegInput::open(handle, trustWeakEvidence, stop);
    if (!input) { return nullptr; }
    const AVCodecParameters& parameters = *input->stream().codecpar;
    if (parameters.sample_rate < 1 || parameters.ch_layout.nb_channels < 1) { return nullptr; }
    if (parameters.ch_layout.nb_channels > maxChannels) { return nullptr; }
    CodecContextPtr decoder = openDecoder(input->stream());
    if (!decoder) { return nullptr; }
    StreamFacts facts = streamFacts(*input, *handle, container);
    return std::make_unique<FFmpegFile>(std::move(input), std::move(decoder), std::move(facts));
}

}  // namespace brindlehum
