// WaveDetail: the part of the loaded sound that a zoomed waveform shows, in finer buckets than its overview has.
#pragma once

#include <QObject>
#include <functional>
#include <memory>
#include <optional>

#include "audio/wave/waveform.h"
#include "mix/player/visible_range.h"
#include "platform/background.h"

namespace brindlehum {

// The part to read for a picture of `columns` pixels, with some room for scrolling on both sides; none when the
// overview is fine enough. Its buckets are at most as wide as a column.
std::optional<WaveformSpan> detailSpan(const VisibleRange& range, int columns, int64_t overviewBucketFrames);

// Main thread; it reads on a thread of its own. A newer request stops an older one that doesn't serve it.
class WaveDetail : public QObject {
    Q_OBJECT
public:
    // Opens the sound on the reading thread; may throw. `stop` as for FileSource.
    using Open = std::function<std::unique_ptr<FrameSource>(const std::function<bool()>& stop)>;

    explicit WaveDetail(MainLoop& loop) : reads_(loop, "Brindlehum.wave") {}

    // Another sound, or another version of it: forgets what was read.
    void setSource(Open open);
    // The same sound under another name: keeps it.
    void moveSource(Open open) { open_ = std::move(open); }
    void want(const VisibleRange& range, int columns, int64_t overviewBucketFrames);
    // What has been read so far; null when nothing has. A sound that can't be read has no detail: whoever loads or
    // plays it reports the reason.
    WaveformPtr data() const { return data_; }
    // The queue of the reads; tests drain it.
    Background& reads() { return reads_; }

Q_SIGNALS:
    void changed();

private:
    void show(WaveformPtr data);

    Open open_;
    WaveformPtr data_;
    std::optional<WaveformSpan> wanted_;  // read, or being read
    Background::Line line_;
    Background reads_;  // last member, so that its work ends first
};

}  // namespace brindlehum
