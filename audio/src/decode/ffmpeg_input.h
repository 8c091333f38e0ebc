// One audio stream of a file as packets, through libavformat.
#pragma once

#include <cstdint>
#include <memory>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

#include "base/file_handle.h"

namespace brindlehum {

struct FormatContextCloser {
    void operator()(AVFormatContext* context) const;
};
struct CodecContextFreer {
    void operator()(AVCodecContext* context) const { avcodec_free_context(&context); }
};
struct PacketFreer {
    void operator()(AVPacket* packet) const { av_packet_free(&packet); }
};
struct FrameFreer {
    void operator()(AVFrame* frame) const { av_frame_free(&frame); }
};
using CodecContextPtr = std::unique_ptr<AVCodecContext, CodecContextFreer>;
using FormatContextPtr = std::unique_ptr<AVFormatContext, FormatContextCloser>;
using PacketPtr = std::unique_ptr<AVPacket, PacketFreer>;
using FramePtr = std::unique_ptr<AVFrame, FrameFreer>;

// The container in the cursor's file, with its header read; null when it isn't a known one. Reads only the cursor,
// until the context is closed: never opens another file or address that the content names.
FormatContextPtr openContainer(FileCursor& cursor);

// A decoder for the stream that keeps encoder delay, so that it can be cut by position, the same way after every seek.
// Null when FFmpeg has none.
CodecContextPtr openDecoder(const AVStream& stream);

class FFmpegInput {
public:
    // Null when no known audio stream is in the file. `trustWeakEvidence`: a single frame of a raw stream is enough,
    // which other data can show by chance.
    // `stop` becomes the cursor's.
    static std::unique_ptr<FFmpegInput> open(const std::shared_ptr<FileHandle>& handle, bool trustWeakEvidence,
                                             const std::function<bool()>& stop);

    const AVStream& stream() const { return *stream_; }
    const AVDictionary* metadata() const { return context_->metadata; }
    bool isFormat(const char* name) const;
    int sampleRate() const { return stream_->codecpar->sample_rate; }
    // A time of the stream in sample frames.
    int64_t toFrames(int64_t time) const;

    // The next packet of the stream; false at the end, where the data breaks off, or on a read error.
    bool read(AVPacket& packet);
    // To a packet that starts at or before the frame, or to the start of the file. False when the format can't.
    bool seek(int64_t frame);
    bool rewind();
    // Time in frames of the first packet, where the container has an index; else 0.
    int64_t firstIndexedFrame() const;
    // The time in frames at which the last packet ends, found without decoding more than that packet; leaves the
    // input at its start. Reads the whole file where it has no index.
    int64_t measureEnd();
    // True once the system refused a read (the end of the file isn't a refusal).
    bool hadReadError() const { return cursor_.failed; }

private:
    FileCursor cursor_;
    FormatContextPtr context_;
    AVStream* stream_ = nullptr;
};

}  // namespace brindlehum
