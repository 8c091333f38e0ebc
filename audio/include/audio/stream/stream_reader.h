// StreamReader: runs a thread that pulls frames from a source, converts their rate and fills a ring.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include "audio/stream/frame_source.h"
#include "core/mn_ring.h"
#include "dsp/resampler.h"

namespace brindlehum {

// Owned through std::shared_ptr: the thread holds a reference while it runs. The ring lives as long as the reader, so
// the owner must keep the reader until the render side no longer uses the ring.
class StreamReader : public std::enable_shared_from_this<StreamReader> {
public:
    // Who reads the ring: a device, which needs more than a second queued, or the thread that also fills it, which has
    // the ring hold two blocks, so that they stay in the caches.
    enum class Use : uint8_t { live, lockstep };

    // Plays frames `start` to `end` of the source at `outputRate` (Hz). With `loop` it plays from `start` into the loop
    // from loopStart to loopEnd (half-open) and repeats that forever. Both ranges are cut to the source; an empty loop
    // doesn't loop. Rates within 0.5 Hz count as equal. Throws Error: 1 channel count outside 1 to 64, 2 no ring, 3 no
    // buffer, 4 no converter.
    StreamReader(std::unique_ptr<FrameSource> source, double outputRate, int64_t start, int64_t end, bool loop,
                 int64_t loopStart, int64_t loopEnd, Use use = Use::live);
    ~StreamReader();
    StreamReader(const StreamReader&) = delete;
    StreamReader& operator=(const StreamReader&) = delete;

    mn_ring* ring() const noexcept { return ring_.get(); }
    int channels() const noexcept { return channels_; }

    // Pulls one block of up to 4096 frames into the ring, which must have room for it; returns false when the stream is
    // over. Prefills the ring before start(), on the thread that made the reader.
    bool fillOnce();
    // Starts the thread "Brindlehum.StreamReader" (cut to the system's limit), which keeps 1.5 s of audio queued and
    // ends with the stream. Call once. Throws Error (ring) when no thread can be started.
    void start();
    // Ends the thread at its next turn; the ring stays. Any thread, returns at once.
    void cancel();
    bool isCancelled() const;
    // The source frame from which on nothing could be read, once the stream has ended before its end. Any thread.
    std::optional<int64_t> brokenOffAt() const;

private:
    // Planes of 4096 frames in one block of memory.
    struct Planes {
        void allocate(int channels);
        std::vector<float> samples;
        std::vector<float*> planes;  // one per channel
    };
    struct Block {
        int frames = 0;
        int64_t start = 0;  // source frame of the first one
    };
    struct RingDeleter {
        void operator()(mn_ring* ring) const noexcept { mn_ring_destroy(ring); }
    };
    int read(int64_t limit);
    Block readSource(int limit);
    bool fillPlain();
    bool fillConverted();
    double positionOf(double virtualPos) const;
    void write(const Planes& planes, int frames);
    bool finish();
    void run();

    std::unique_ptr<mn_ring, RingDeleter> ring_;
    int channels_ = 0;
    std::unique_ptr<FrameSource> source_;
    std::unique_ptr<Resampler> converter_;
    Planes in_;
    Planes out_;        // used only with a converter
    double ratio_ = 1;  // source rate / output rate
    int64_t endFrame_ = 0;
    bool loop_ = false;
    int64_t loopStart_ = 0;
    int64_t loopEnd_ = 0;
    int64_t filePos_ = 0;    // next source frame to read
    double virtualPos_ = 0;  // position in source frames of the last frame produced, not wrapped at the loop's end
    std::vector<double> positions_;  // 4096
    mutable std::mutex lock_;
    bool cancelled_ = false;  // guarded by lock_, as is the next
    std::optional<int64_t> brokenOffAt_;
};

}  // namespace brindlehum
