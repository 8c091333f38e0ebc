// StreamReader: one thread that pulls frames from a source, converts their rate and fills a ring.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include "audio/frame_source.h"
#include "core/mn_ring.h"
#include "dsp/resampler.h"

namespace brindlehum {

// Owned through std::shared_ptr: the thread holds a reference while it runs. The ring lives as long as the
// reader; its owner must keep the reader until the render side has let go of the ring.
class StreamReader : public std::enable_shared_from_this<StreamReader> {
public:
    // Plays frames `start` to `end` of the source at `outputRate` (Hz); with `loop`, for ever round loopStart to
    // loopEnd (half-open). Throws Error: 1 channel count outside 1 to 64, 2 no ring, 3 no buffer, 4 no converter.
    StreamReader(std::unique_ptr<FrameSource> source, double outputRate, int64_t start, int64_t end, bool loop,
                 int64_t loopStart, int64_t loopEnd);
    ~StreamReader();
    StreamReader(const StreamReader&) = delete;
    StreamReader& operator=(const StreamReader&) = delete;

    mn_ring* ring() const noexcept { return ring_; }
    int channels() const noexcept { return channels_; }

    // Pulls one block of up to 4096 frames into the ring, which must have room for it; false when the stream is
    // over. For prefilling before start(), by the thread that made the reader.
    bool fillOnce();
    // Starts the thread "Brindlehum.StreamReader" (cut to what the system allows). Once. Throws Error 2 when no
    // thread can be had.
    void start();
    // Ends the thread at its next turn; the ring stays. Any thread, returns at once.
    void cancel();
    bool isCancelled() const;

private:
    struct Block {
        int frames = 0;
        int64_t start = 0;
    };
    Block readSource(int limit);
    bool fillPlain();
    bool fillConverted();
    void run();

    mn_ring* ring_ = nullptr;
    int channels_ = 0;
    std::unique_ptr<FrameSource> source_;
    std::unique_ptr<Resampler> converter_;
    std::vector<float> inBuffer_;   // channels x 4096
    std::vector<float> outBuffer_;  // channels x 4096, with a converter only
    std::vector<float*> inPlanes_;
    std::vector<float*> outPlanes_;
    double ratio_ = 1;  // source rate / output rate
    int64_t endFrame_ = 0;
    bool loop_ = false;
    int64_t loopStart_ = 0;
    int64_t loopEnd_ = 0;
    int64_t filePos_ = 0;    // next source frame to read
    double virtualPos_ = 0;  // position in source frames of the last frame produced
    bool sourceDone_ = false;
    std::vector<double> positions_;  // 4096
    mutable std::mutex lock_;
    bool cancelled_ = false;  // guarded by lock_
};

}  // namespace brindlehum
