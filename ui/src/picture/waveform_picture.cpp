// Measures an overview and paints its lanes.
#include "ui/picture/waveform_picture.h"

#include <QCoreApplication>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QList>
#include <algorithm>
#include <cmath>
#include <string_view>

namespace brindlehum::WaveformPicture {
namespace {

constexpr double labelInset = 6;  // logical pixels, as is the next
constexpr double bandWidth = 4;
constexpr double labelPoints = 9;
constexpr double minSamplePixels = 2;  // device pixels, as are the next two
constexpr double minDotPixels = 8;
constexpr double dotSize = 5;
constexpr size_t maxLanes = 16;  // of an overview
constexpr size_t minBanded = 3;  // lanes; one or two can't be confused

// A float file may hold any value; what lies far outside the picture needn't be drawn to scale.
double reach(float value) {
    return std::isfinite(value) ? std::clamp(double(value), -100.0, 100.0) : 0;
}

// One lane's place in device pixels.
struct Place {
    int columns = 0;
    double middle = 0;
    double scale = 1;  // of a sample of 1
};

bool covers(const WaveformData* data, double from, double to, int64_t total) {
    return data && from >= double(data->firstFrame) && std::min(to, double(total)) <= double(data->loadedEnd());
}

// A flat line is one pixel high.
QRect columnFrom(int column, double low, double high, const Place& place) {
    const int top = int(std::floor(place.middle - high * place.scale));
    const int bottom = int(std::ceil(place.middle - low * place.scale));
    return {column, top, 1, std::max(bottom - top, 1)};
}

// Makes one rectangle a column from the lowest to the highest value.
// Rectangles, because Qt takes a hundred times as long to fill a path of a thousand parts.
QList<QRect> laneColumns(const Lanes& lanes, size_t lane, const Place& place) {
    QList<QRect> spans;
    spans.reserve(place.columns);
    const VisibleRange& visible = lanes.visible;
    for (int column = 0; column < place.columns; ++column) {
        const double from = visible.frameAt(double(column) / place.columns);
        const double to = visible.frameAt(double(column + 1) / place.columns);
        const bool fine = covers(lanes.detail, from, to, visible.total);
        const WaveformData* data = fine ? lanes.detail : lanes.overview;
        if (!data || lane >= data->mins.size() || from >= double(visible.total)) { continue; }
        const auto [first, last] = bucketsUnder(from, to, *data);
        if (first >= last) { continue; }
        const auto& mins = data->mins[lane];
        const auto& maxs = data->maxs[lane];
        const double low = reach(*std::min_element(mins.begin() + first, mins.begin() + last));
        const double high = reach(*std::max_element(maxs.begin() + first, maxs.begin() + last));
        spans.append(columnFrom(column, low, high, place));
    }
    return spans;
}

// True when single samples are wide enough to be told apart, and all of those in sight are known.
bool showsSamples(const Lanes& lanes, int columns) {
    const VisibleRange& visible = lanes.visible;
    return visible.length * minSamplePixels <= columns && lanes.detail && lanes.detail->bucketFrames == 1 &&
           covers(lanes.detail, visible.first, visible.end(), visible.total);
}

// The line that joins the samples, of which each stands in the middle of its frame. `at` counts in frames.
double lineAt(const std::vector<float>& samples, double at) {
    const double place = std::clamp(at - 0.5, 0.0, double(samples.size() - 1));
    const auto left = size_t(place);
    const size_t right = std::min(left + 1, samples.size() - 1);
    const double share = place - double(left);
    return (1 - share) * reach(samples[left]) + share * reach(samples[right]);
}

// Draws the line in columns too, and a dot on each sample where there is room: Qt's own lines take a hundred times as
// long.
QList<QRect> laneSamples(const Lanes& lanes, size_t lane, const Place& place) {
    QList<QRect> spans;
    const VisibleRange& visible = lanes.visible;
    if (lane >= lanes.detail->mins.size() || lanes.detail->mins[lane].empty()) { return spans; }
    const std::vector<float>& samples = lanes.detail->mins[lane];
    const double first = visible.first - double(lanes.detail->firstFrame);
    const double perColumn = visible.length / place.columns;
    for (int column = 0; column < place.columns; ++column) {
        // The line has a corner inside a column where a sample stands.
        const double from = first + column * perColumn;
        const double corner = std::clamp(std::floor(from + perColumn - 0.5) + 0.5, from, from + perColumn);
        const auto [low, high] =
            std::minmax({lineAt(samples, from), lineAt(samples, corner), lineAt(samples, from + perColumn)});
        spans.append(columnFrom(column, low, high, place));
    }
    if (1 / perColumn < minDotPixels) { return spans; }
    for (auto frame = std::max(std::floor(first), 0.0);
         frame < std::min(first + visible.length, double(samples.size())); ++frame) {
        const QPointF sample((frame + 0.5 - first) / perColumn,
                             place.middle - lineAt(samples, frame + 0.5) * place.scale);
        spans.append(QRectF(sample.x() - dotSize / 2, sample.y() - dotSize / 2, dotSize, dotSize).toRect());
    }
    return spans;
}

QFont labelFont(double laneHeight) {
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPointSizeF(labelPoints);
    // In a low window, sixteen lanes leave less than a line of text each.
    if (QFontMetricsF(font).height() > laneHeight) { font.setPixelSize(std::max(6, int(laneHeight) - 3)); }
    return font;
}

void paintLabel(QPainter& painter, const QPointF& corner, Qt::Alignment side, const QString& text,
                const WaveformColors& colors) {
    if (text.isEmpty()) { return; }
    const QFontMetricsF metrics(painter.font());
    QRectF plate(corner, QSizeF(metrics.horizontalAdvance(text) + 6, metrics.height()));
    if (side == Qt::AlignRight) { plate.moveRight(corner.x()); }
    // A plate behind the text keeps it legible over a loud lane.
    painter.setPen(Qt::NoPen);
    painter.setBrush(colors.labelPlate);
    painter.drawRoundedRect(plate, 3, 3);
    painter.setPen(colors.label);
    painter.drawText(plate, Qt::AlignCenter, text);
}

const QColor& groupColor(LaneGroup group, const WaveformColors& colors) {
    switch (group) {
        case LaneGroup::front:
            return colors.front;
        case LaneGroup::lfe:
            return colors.lfe;
        case LaneGroup::surround:
            return colors.surround;
        case LaneGroup::height:
            return colors.height;
        case LaneGroup::other:
            break;
    }
    return colors.label;
}

// A pixel is left free between two bands, so that lanes of one group can be counted.
void paintBands(QPainter& painter, const QSizeF& size, const std::vector<std::string>& labels,
                const WaveformColors& colors, double laneHeight) {
    if (labels.size() < minBanded) { return; }
    for (size_t lane = 0; lane < labels.size() && double(lane) * laneHeight < size.height(); ++lane) {
        const QRectF band(0, laneHeight * double(lane) + 1, bandWidth, laneHeight - 1);
        painter.fillRect(band, groupColor(laneGroup(labels[lane]), colors));
    }
}

}  // namespace

LaneGroup laneGroup(const std::string& label) {
    if (label == "LFE") { return LaneGroup::lfe; }
    if (label == "L" || label == "R" || label == "C") { return LaneGroup::front; }
    if (label.empty() || std::string_view("LRCT").find(label[0]) == std::string_view::npos) { return LaneGroup::other; }
    if (label.find('t') != std::string::npos || label[0] == 'T') { return LaneGroup::height; }
    return label.back() == 's' ? LaneGroup::surround : LaneGroup::front;
}

float peak(const WaveformData& data) {
    float most = 0;
    for (const auto* side : {&data.mins, &data.maxs}) {
        for (const auto& lane : *side) {
            const auto end = lane.begin() + std::min<ptrdiff_t>(data.loadedBuckets, std::ssize(lane));
            for (auto value = lane.begin(); value != end; ++value) { most = std::max(most, std::abs(*value)); }
        }
    }
    return most;
}

double viewGain(float peak) {
    return peak > 1e-6F ? std::min(0.95 / peak, maxViewGain) : 1;
}

QString gainText(double gain) {
    return gain > 1.12
               ? QCoreApplication::translate("WaveformPicture", "view +%1 dB").arg(20 * std::log10(gain), 0, 'f', 0)
               : QString();
}

Buckets bucketsUnder(double from, double to, const WaveformData& data) {
    if (data.bucketFrames <= 0 || !(from < to)) { return {}; }
    const auto bucketFrames = double(data.bucketFrames);
    const double first = std::floor((from - double(data.firstFrame)) / bucketFrames);
    const double last = std::ceil((to - double(data.firstFrame)) / bucketFrames);
    const auto loaded = double(std::min(data.loadedBuckets, data.bucketCount));
    return {int(std::clamp(first, 0.0, loaded)), int(std::clamp(last, 0.0, loaded))};
}

double playheadX(double frame, const VisibleRange& visible, double width) {
    return std::round(visible.shareOf(frame) * width) - 0.5;
}

Span span(const FrameRange& range, const VisibleRange& visible, double width) {
    const double left = visible.shareOf(double(range.lower)) * width;
    return {left, visible.shareOf(double(range.upper)) * width - left};
}

void paintLaneMarks(QPainter& painter, const QSizeF& size, size_t lanes, const std::vector<std::string>& labels,
                    const WaveformColors& colors) {
    const double laneHeight = size.height() / double(lanes);
    paintBands(painter, size, labels, colors, laneHeight);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setFont(labelFont(laneHeight));
    const size_t labelled = laneHeight < minLabelLane ? 0 : std::min(lanes, labels.size());
    for (size_t lane = 0; lane < labelled; ++lane) {
        paintLabel(painter, {labelInset, laneHeight * double(lane) + 1}, Qt::AlignLeft,
                   QString::fromStdString(labels[lane]), colors);
    }
}

void paintLanes(QPainter& painter, const QSizeF& size, double dpr, const Lanes& lanes, const WaveformColors& colors) {
    const WaveformData* data = lanes.overview;
    const size_t count = data && data->channels > 0 ? size_t(data->channels) : std::min(lanes.labels.size(), maxLanes);
    if (count == 0 || size.isEmpty()) { return; }
    const double laneHeight = size.height() / double(count);
    const double gain = data ? viewGain(peak(*data)) : 1;

    painter.save();
    painter.scale(1 / dpr, 1 / dpr);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colors.wave);
    const int columns = int(std::lround(size.width() * dpr));
    const bool samples = showsSamples(lanes, columns);
    for (size_t lane = 0; lane < count; ++lane) {
        const double top = laneHeight * dpr * double(lane);
        if (lane > 0) { painter.fillRect(QRectF(0, std::round(top), columns, 1), colors.separator); }
        const Place place{columns, top + laneHeight * dpr / 2, gain * laneFill * laneHeight * dpr};
        painter.drawRects(samples ? laneSamples(lanes, lane, place) : laneColumns(lanes, lane, place));
    }
    painter.restore();
    paintLaneMarks(painter, size, count, lanes.labels, colors);
    painter.setFont(labelFont(size.height()));
    paintLabel(painter, {size.width() - labelInset, 1}, Qt::AlignRight, gainText(gain), colors);
}

}  // namespace brindlehum::WaveformPicture
