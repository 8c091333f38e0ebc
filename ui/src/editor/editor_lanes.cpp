// Chooses how the lanes are shown at this zoom.
#include "ui/editor/editor_lanes.h"

#include <algorithm>
#include <cmath>

#include "ui/look/tabular_font.h"
#include "ui/picture/waveform_picture.h"

namespace brindlehum {
namespace {

constexpr double labelSpacing = 18;  // of frequencies, logical pixels
constexpr double labelPoints = 8;

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
    if (isSpectrum()) {
        paintSpectrum(painter, area, dpr, shown);
    } else if (shown.visible.length <= size.width()) {
        return paintSamples(painter, area, dpr, shown, colors);
    } else {
        const QImage& waves = waves_.draw({shown.sound, shown.revision, shown.visible, size, colors.wave});
        painter.drawImage(area, waves, QRectF(waves.rect()));
    }
    for (int lane = 1; lane < lanes; ++lane) {
        const double y = std::round(area.top() + area.height() * lane / lanes);
        painter.fillRect(QRectF(area.left(), y, area.width(), 1 / dpr), colors.separator);
    }
    painter.save();
    painter.translate(area.topLeft());
    WaveformPicture::paintLaneMarks(painter, area.size(), size_t(lanes), shown.labels, colors);
    painter.restore();
}

// The frequencies stand at the right edge of each lane that has room for them.
void EditorLanes::paintSpectrum(QPainter& painter, const QRectF& area, double dpr, const Shown& shown) {
    const Theme& theme = Theme::current();
    const SpectrumAxis axis{shown.sampleRate, style == Style::linearSpectrum};
    spectrum_.paint(painter, area, dpr, {shown.sound, shown.revision, shown.visible, axis, theme.dark});
    const int lanes = std::min(shown.sound.channels(), mostLanes);
    const double height = area.height() / lanes;
    if (height < 4 * labelSpacing) { return; }
    painter.setFont(tabularFont(labelPoints));
    const double tall = QFontMetricsF(painter.font()).height();
    for (int lane = 0; lane < lanes; ++lane) {
        for (const auto& label : axis.labels(height, labelSpacing)) {
            const double y = area.top() + height * (lane + 1 - axis.shareOf(label.frequency));
            const double wide = QFontMetricsF(painter.font()).horizontalAdvance(label.text) + 6;
            const QRectF plate(area.right() - wide - 8, y - tall / 2, wide, tall);
            painter.fillRect(plate, theme.waveform.labelPlate);
            painter.fillRect(QRectF(area.right() - 6, y, 6, 1), theme.waveform.label);
            painter.setPen(theme.waveform.label);
            painter.drawText(plate, Qt::AlignCenter, label.text);
        }
    }
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
