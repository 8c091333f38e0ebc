// Runs libavformat over a FileHandle: opens a fixed list of formats, seeks and measures.
#include "decode/ffmpeg_input.h"

#include <algorithm>
#include <cstring>
#include <mutex>

namespace brindlehum {

namespace {

// Only containers and raw streams of sound: no playlists, concatenations or network formats.
constexpr const char* knownFormats =
    "mp3,aac,mov,flac,wav,w64,aiff,caf,ogg,ac3,eac3,dts,truehd,mlp,ape,wv,tta,tak,loas,au,amr";

constexpr int ioBufferBytes = 64 * 1024;

int readBytes(void* opaque, uint8_t* out, int bytes) {
    const int64_t got = static_cast<FileCursor*>(opaque)->read(out, bytes);
    return got > 0 ? int(got) : got < 0 ? AVERROR(EIO) : AVERROR_EOF;
}

int64_t seekBytes(void* opaque, int64_t offset, int whence) {
    auto* cursor = static_cast<FileCursor*>(opaque);
    if (whence & AVSEEK_SIZE) { return cursor->handle->size(); }
    const int64_t at = cursor->seek(offset, whence & ~AVSEEK_FORCE);
    return at < 0 ? AVERROR(EINVAL) : at;
}

int mustStop(void* opaque) {
    const auto* cursor = static_cast<FileCursor*>(opaque);
    return cursor->stop && cursor->stop() ? 1 : 0;
}

AVIOContext* makeIO(FileCursor& cursor) {
    auto* buffer = static_cast<unsigned char*>(av_malloc(ioBufferBytes));
    if (!buffer) { return nullptr; }
    AVIOContext* io = avio_alloc_context(buffer, ioBufferBytes, 0, &cursor, readBytes, nullptr, seekBytes);
    if (!io) { av_free(buffer); }
    return io;
}

// The number of frames that a packet decodes to.
int64_t decodedFrames(const AVStream& stream, const AVPacket& packet) {
    const CodecContextPtr decoder = openDecoder(stream);
    const FramePtr frame(av_frame_alloc());
    if (!decoder || !frame || avcodec_send_packet(decoder.get(), &packet) < 0) { return 0; }
    avcodec_send_packet(decoder.get(), nullptr);
    int64_t frames = 0;
    while (avcodec_receive_frame(decoder.get(), frame.get()) >= 0) { frames += frame->nb_samples; }
    return frames;
}

int refuseOtherFiles(AVFormatContext*, AVIOContext**, const char*, int, AVDictionary**) {
    return AVERROR(EPERM);
}

}  // namespace

CodecContextPtr openDecoder(const AVStream& stream) {
    const AVCodec* codec = avcodec_find_decoder(stream.codecpar->codec_id);
    CodecContextPtr decoder(codec ? avcodec_alloc_context3(codec) : nullptr);
    if (!decoder || avcodec_parameters_to_context(decoder.get(), stream.codecpar) < 0) { return nullptr; }
    decoder->pkt_timebase = stream.time_base;
    decoder->thread_count = 1;
    decoder->flags2 |= AV_CODEC_FLAG2_SKIP_MANUAL;
    if (avcodec_open2(decoder.get(), codec, nullptr) < 0) { return nullptr; }
    return decoder;
}

void FormatContextCloser::operator()(AVFormatContext* context) const {
    AVIOContext* io = context->pb;
    avformat_close_input(&context);
    if (!io) { return; }
    av_freep(&io->buffer);
    avio_context_free(&io);
}

FormatContextPtr openContainer(FileCursor& cursor) {
    static std::once_flag settled;
    std::call_once(settled, [] {
        av_log_set_level(AV_LOG_QUIET);
        // Some demuxers allocate what a header claims before they check that the file has it.
        constexpr size_t maxBytesAtOnce = 256 << 20;
        av_max_alloc(maxBytesAtOnce);
    });

    AVFormatContext* context = avformat_alloc_context();
    if (!context) { return nullptr; }
    AVIOContext* io = makeIO(cursor);
    context->pb = io;
    context->io_open = refuseOtherFiles;
    context->interrupt_callback = {mustStop, &cursor};
    context->format_whitelist = av_strdup(knownFormats);
    if (!io || avformat_open_input(&context, nullptr, nullptr, nullptr) < 0) {  // frees the context on failure
        if (io) {
            av_freep(&io->buffer);
            avio_context_free(&io);
        }
        return nullptr;
    }
    return FormatContextPtr(context);
}

std::unique_ptr<FFmpegInput> FFmpegInput::open(const std::shared_ptr<FileHandle>& handle, bool trustWeakEvidence,
                                               const std::function<bool()>& stop) {
    auto input = std::make_unique<FFmpegInput>();
    input->cursor_.handle = handle;
    input->cursor_.stop = stop;
    input->context_ = openContainer(input->cursor_);
    AVFormatContext* context = input->context_.get();
    if (!context) { return nullptr; }
    if (context->probe_score < AVPROBE_SCORE_RETRY / 2 && !trustWeakEvidence) { return nullptr; }
    if (avformat_find_stream_info(context, nullptr) < 0) { return nullptr; }
    const int index = av_find_best_stream(context, AVMEDIA_TYPE_AUDIO, -1, -1, nullptr, 0);
    if (index < 0) { return nullptr; }
    for (unsigned i = 0; i < context->nb_streams; ++i) {
        context->streams[i]->discard = int(i) == index ? AVDISCARD_DEFAULT : AVDISCARD_ALL;
    }
    input->stream_ = context->streams[index];
    return input;
}

bool FFmpegInput::isFormat(const char* name) const {
    return std::strstr(context_->iformat->name, name) != nullptr;
}

int64_t FFmpegInput::toFrames(int64_t time) const {
    return av_rescale_q(time, stream_->time_base, AVRational{1, sampleRate()});
}

bool FFmpegInput::read(AVPacket& packet) {
    while (av_read_frame(context_.get(), &packet) >= 0) {
        if (packet.stream_index == stream_->index) { return true; }
        av_packet_unref(&packet);
    }
    return false;
}

bool FFmpegInput::seek(int64_t frame) {
    const int64_t time = av_rescale_q_rnd(frame, AVRational{1, sampleRate()}, stream_->time_base, AV_ROUND_DOWN);
    return av_seek_frame(context_.get(), stream_->index, time, AVSEEK_FLAG_BACKWARD) >= 0;
}

bool FFmpegInput::rewind() {
    // Packets that hold only delay come before time 0.
    int64_t first = stream_->start_time == AV_NOPTS_VALUE ? 0 : std::min<int64_t>(0, stream_->start_time);
    if (const AVIndexEntry* entry = avformat_index_get_entry(stream_, 0)) { first = std::min(first, entry->timestamp); }
    if (av_seek_frame(context_.get(), stream_->index, first, AVSEEK_FLAG_BACKWARD) >= 0) { return true; }
    return av_seek_frame(context_.get(), stream_->index, 0, AVSEEK_FLAG_BYTE) >= 0;
}

int64_t FFmpegInput::firstIndexedFrame() const {
    const AVIndexEntry* first = avformat_index_get_entry(stream_, 0);
    return first ? toFrames(first->timestamp) : 0;
}

int64_t FFmpegInput::measureEnd() {
    const PacketPtr packet(av_packet_alloc());
    const PacketPtr last(av_packet_alloc());
    if (!packet || !last) { return 0; }
    // Containers with packet tables index every packet at opening; raw streams extend their index as they are read.
    const int indexed = isFormat("caf") || isFormat("mp4") ? avformat_index_get_entries_count(stream_) : 0;
    const AVIndexEntry* tail = indexed > 0 ? avformat_index_get_entry(stream_, indexed - 1) : nullptr;
    if (tail) { av_seek_frame(context_.get(), stream_->index, tail->timestamp, AVSEEK_FLAG_BACKWARD); }
    int64_t end = 0;
    while (read(*packet)) {
        const int64_t start = packet->pts == AV_NOPTS_VALUE ? end : packet->pts;
        end = std::max(end, start + packet->duration);
        av_packet_unref(last.get());
        av_packet_move_ref(last.get(), packet.get());
    }
    int64_t frames = toFrames(end);
    if (last->data && last->duration == 0) {
        frames = toFrames(std::max(end, last->pts)) + decodedFrames(*stream_, *last);
    }
    rewind();
    return frames;
}

}  // namespace brindlehum
