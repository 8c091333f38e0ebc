// Chooses how the lanes are shown at this zoom.
#include "ui/editor/editor_lanes.h"

#include <algorithm>
#include <cmath>

#include "ui/picture/waveform_picture.h"

namespace brindlehum {
namespace {

// The samples in sight themselves.
WaveformData samplesOf(const Sound& sound, const VisibleRange& visible) {
    WaveformData out;
    out.channels = std::min(sound.channels(), mostLanes);
    out.bucketFrames = 1;
    out.firstFrame = std::clamp<int64_t>(int64_t(visible.first), 0, sound.frames());
    const int64_t end = std::clamp<int64_t>(int64_t(std::ceil(visible.end())) + 1, out.firstFrame, sound.frames());
    out.bucketCount = out.loadedBuckets = int(end - out.firstFrame);
    for (int c = 0; c < out.channels; ++c) {
        auto& samples = out.mins.emplace_back(size_t(out.bucketCount));
        sound.track(c).read(out.firstFrame, samples);
        out.maxs.push_back(samples);
    }
    return out;
}

}  // namespace

void EditorLanes::paint(QPainter& painter, const QRectF& area, double dpr, const Shown& shown,
                        const WaveformColors& colors) {
    const int lanes = std::min(shown.sound.channels(), mostLanes);
    if (lanes == 0 || area.isEmpty()) { return; }
    const QSize size = (area.size() * dpr).toSize();
    if (shown.visible.length <= size.width()) { return paintSamples(painter, area, dpr, shown, colors); }
    const QImage& waves = waves_.draw({shown.sound, shown.revision, shown.visible, size, colors.wave});
    painter.drawImage(area, waves, QRectF(waves.rect()));
    for (int lane = 1; lane < lanes; ++lane) {
        const double y = std::round(area.top() + area.height() * lane / lanes);
        painter.fillRect(QRectF(area.left(), y, area.width(), 1 / dpr), colors.separator);
    }
    painter.save();
    painter.translate(area.topLeft());
    WaveformPicture::paintLaneMarks(painter, area.size(), size_t(lanes), shown.labels, colors);
    painter.restore();
}

void EditorLanes::paintSamples(QPainter& painter, const QRectF& area, double dpr, const Shown& shown,
                               const WaveformColors& colors) {
    const QSize size = (area.size() * dpr).toSize();
    if (samples_.size() != size || samplesRevision_ != shown.revision || samplesVisible_ != shown.visible ||
        samplesColor_ != colors.wave) {
        samples_ = QPixmap(size);
        samples_.setDevicePixelRatio(dpr);
        samples_.fill(Qt::transparent);
        QPainter onto(&samples_);
        const WaveformData samples = samplesOf(shown.sound, shown.visible);
        WaveformPicture::paintLanes(onto, area.size(), dpr, {nullptr, &samples, shown.visible, shown.labels}, colors);
        samplesRevision_ = shown.revision;
        samplesVisible_ = shown.visible;
        samplesColor_ = colors.wave;
    }
    painter.drawPixmap(area.topLeft(), samples_);
}

}  // namespace brindlehum
