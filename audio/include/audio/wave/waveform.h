// Waveform overviews: min/max buckets of a whole file, filled in the background, and a cache of finished ones.
#pragma once

#include <cstdint>
#include <deque>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <vector>

#include "audio/stream/frame_source.h"
#include "base/executor.h"

namespace brindlehum {

// An immutable snapshot that may be partial: entries at or past loadedBuckets are 0.
struct WaveformData {
    int channels = 0;          // lanes held, at most 16
    int64_t bucketFrames = 1;  // source frames a bucket
    int bucketCount = 0;
    int loadedBuckets = 0;
    std::vector<std::vector<float>> mins;  // a lane, then bucketCount values
    std::vector<std::vector<float>> maxs;

    bool isComplete() const { return loadedBuckets >= bucketCount; }
};
using WaveformPtr = std::shared_ptr<const WaveformData>;

class WaveformLoader {
public:
    using Update = std::function<void(WaveformPtr)>;
    // Called once, in the background. Throws Error when the source can't be opened.
    using Open = std::function<std::unique_ptr<FrameSource>()>;
    // Seconds on a steady clock.
    using Clock = std::function<double()>;

    // Reads the file through `background`, hands growing snapshots (at most one in 0.12 s, then the complete one)
    // to `onUpdate` through `main`. A file that can't be opened gives no update; one that breaks off counts as
    // complete with zeros at its end.
    static std::shared_ptr<WaveformLoader> load(const std::filesystem::path& path, Update onUpdate,
                                                const Executor& background, const Executor& main);
    static std::shared_ptr<WaveformLoader> load(Open open, Update onUpdate, const Executor& background,
                                                const Executor& main, Clock now);
    // The whole overview on the caller's thread. Throws Error when the file can't be opened.
    static WaveformPtr overview(const std::filesystem::path& path);
    static WaveformPtr overview(FrameSource& source);

    // No update follows once this has returned on the main thread. Any thread.
    void cancel();
    bool isCancelled() const;

private:
    mutable std::mutex lock_;
    bool cancelled_ = false;
};

// The last 48 finished overviews, first in, first out by time of storing. Main thread only.
class WaveformCache {
public:
    static WaveformCache& shared();
    WaveformPtr get(const std::filesystem::path& path) const;
    // Null removes the entry.
    void set(const std::filesystem::path& path, WaveformPtr data);

private:
    std::map<std::filesystem::path, WaveformPtr> items_;
    std::deque<std::filesystem::path> order_;
};

}  // namespace brindlehum
