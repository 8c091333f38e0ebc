// FFmpegInput: delivers one audio stream of a file as packets, through libavformat.
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

// The container in the cursor's file, with its header read; null for an unknown one. Until the context is closed, reads
// only the cursor: never opens another file or address that the content names.
FormatContextPtr openContainer(FileCursor& cursor);

// A decoder that keeps the stream's encoder delay, so that the delay can be cut by position, the same way after every
// seek. Null when FFmpeg has no decoder.
CodecContextPtr openDecoder(const AVStream& stream);

class FFmpegInput {
public:
    // Null when the file has no known audio stream. With `trustWeakEvidence` a single frame of a raw stream is enough,
    // although other data can contain one by chance. The cursor calls `stop`.
    static std::unique_ptr<FFmpegInput> open(const std::shared_ptr<FileHandle>& handle, bool trustWeakEvidence,
                                             const std::function<bool()>& stop);

    const AVStream& stream() const { return *stream_; }
    const AVDictionary* metadata() const { return context_->metadata; }
    bool isFormat(const char* name) const;
    int sampleRate() const { return stream_->codecpar->sample_rate; }
    // Converts a time of the stream to sample frames.
    int64_t toFrames(int64_t time) const;

    // Reads the next packet of the stream; returns false at the end, where the data breaks off, or on a read error.
    bool read(AVPacket& packet);
    // Moves to a packet that starts at or before the frame, or to the start of the file. Returns false when the format
    // can't seek.
    bool seek(int64_t frame);
    bool rewind();
    // The time in frames of the first packet when the container has an index, else 0.
    int64_t firstIndexedFrame() const;
    // The time in frames at which the last packet ends. Decodes only that packet, and leaves the input at its start.
    // Reads the whole file when it has no index.
    int64_t measureEnd();
    // True once the system refused a read (reaching the end of the file isn't a refusal).
    bool hadReadError() const { return cursor_.failed; }

private:
    FileCursor cursor_;
    FormatContextPtr context_;
    AVStream* stream_ = nullptr;
};

}  // namespace brindlehum
