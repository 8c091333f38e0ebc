// Waveform overviews: min/max buckets of a whole file or of a part, filled in the background, and a cache of finished
// overviews.
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
#include "base/file_version.h"

namespace brindlehum {

// An immutable snapshot that may be partial: entries from loadedBuckets on are 0.
struct WaveformData {
    int channels = 0;          // number of lanes, at most 16
    int64_t bucketFrames = 1;  // source frames per bucket
    int bucketCount = 0;
    int loadedBuckets = 0;
    std::vector<std::vector<float>> mins;  // indexed by lane, then bucket
    std::vector<std::vector<float>> maxs;
    int64_t firstFrame = 0;  // of the first bucket; 0 in an overview of the whole file

    bool isComplete() const { return loadedBuckets >= bucketCount; }
    // The frame after the last loaded bucket.
    int64_t loadedEnd() const { return firstFrame + loadedBuckets * bucketFrames; }
};
using WaveformPtr = std::shared_ptr<const WaveformData>;

// A part of a source, in buckets of a chosen size.
struct WaveformSpan {
    int64_t first = 0;   // frame, at least 0
    int64_t frames = 0;  // the last bucket may be short
    int64_t bucketFrames = 1;
    bool operator==(const WaveformSpan&) const = default;
};

// Reads the span on the caller's thread, and hands growing snapshots to `grown`, at most one per 0.12 s of `now`.
// Returns the complete one, with zeros where the source breaks off, or null once `stop` returns true.
WaveformPtr waveformDetail(FrameSource& source, const WaveformSpan& span, const std::function<void(WaveformPtr)>& grown,
                           const std::function<bool()>& stop, const std::function<double()>& now);
// Seconds on a steady clock.
double steadySeconds();

class WaveformLoader {
public:
    using Update = std::function<void(WaveformPtr)>;
    // Opens the source; called once, in the background. Throws Error when the source can't be opened.
    using Open = std::function<std::unique_ptr<FrameSource>()>;
    // Seconds on a steady clock.
    using Clock = std::function<double()>;

    // Reads the file through `background` and calls `onUpdate` through `main` with growing snapshots, at most one per
    // 0.12 s, and then with the complete one. A file that can't be opened causes no update; one that breaks off counts
    // as complete with zeros at its end.
    static std::shared_ptr<WaveformLoader> load(const std::filesystem::path& path, Update onUpdate,
                                                const Executor& background, const Executor& main);
    static std::shared_ptr<WaveformLoader> load(Open open, Update onUpdate, const Executor& background,
                                                const Executor& main, Clock now);
    // Computes the whole overview on the caller's thread. Throws Error when the file can't be opened.
    static WaveformPtr overview(const std::filesystem::path& path);
    static WaveformPtr overview(FrameSource& source);

    // After this has returned on the main thread, no update follows. Any thread.
    void cancel();
    bool isCancelled() const;

private:
    mutable std::mutex lock_;
    bool cancelled_ = false;
};

// The last 48 finished overviews; the one stored first is dropped first. An overview belongs to one version of its
// file. Main thread only.
class WaveformCache {
public:
    static WaveformCache& shared();
    WaveformPtr get(const std::filesystem::path& path, const FileVersion& version) const;
    void set(const std::filesystem::path& path, const FileVersion& version, WaveformPtr data);

private:
    struct Item {
        FileVersion version;
        WaveformPtr data;
    };
    std::map<std::filesystem::path, Item> items_;
    std::deque<std::filesystem::path> order_;
};

}  // namespace brindlehum
