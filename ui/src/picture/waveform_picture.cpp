// Measures an overview and paints its lanes.
#include "ui/picture/waveform_picture.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QList>
#include <algorithm>
#include <cmath>
#include <string_view>

namespace brindlehum::WaveformPicture {
namespace {

constexpr double laneFill = 0.46;  // half height of the drawing, of the lane's height
constexpr double labelInset = 6;   // logical pixels, as is the next
constexpr double bandWidth = 4;
constexpr double labelPoints = 9;
constexpr size_t maxLanes = 16;  // of an overview
constexpr size_t minBanded = 3;  // lanes; one or two can't be confused

// A float file may hold any value; what lies far outside the picture needn't be drawn to scale.
double reach(float value) {
    return std::isfinite(value) ? std::clamp(double(value), -100.0, 100.0) : 0;
}

// Draws one rectangle a column from the lowest to the highest value, in device pixels; a flat line is one pixel high.
// Rectangles, because Qt takes a hundred times as long to fill a path of a thousand parts.
QList<QRect> laneColumns(const WaveformData& data, size_t lane, int64_t totalFrames, int columns, double middle,
                         double scale) {
    QList<QRect> spans;
    spans.reserve(columns);
    const auto& mins = data.mins[lane];
    const auto& maxs = data.maxs[lane];
    for (int column = 0; column < columns; ++column) {
        const auto [first, last] = bucketsUnder(column, columns, data, totalFrames);
        if (first >= last) { continue; }
        const float low = *std::min_element(mins.begin() + first, mins.begin() + last);
        const float high = *std::max_element(maxs.begin() + first, maxs.begin() + last);
        const int top = int(std::floor(middle - reach(high) * scale));
        const int bottom = int(std::ceil(middle - reach(low) * scale));
        spans.append(QRect(column, top, 1, std::max(bottom - top, 1)));
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
    return gain > 1.12 ? QString::asprintf("view +%.0f dB", 20 * std::log10(gain)) : QString();
}

Buckets bucketsUnder(int column, int columns, const WaveformData& data, int64_t totalFrames) {
    if (columns <= 0 || totalFrames <= 0 || data.bucketFrames <= 0) { return {}; }
    const double bucketsPerColumn = double(totalFrames) / double(data.bucketFrames) / double(columns);
    const int first = int(column * bucketsPerColumn);
    const int last = std::max(first + 1, int(std::ceil((column + 1) * bucketsPerColumn)));
    const int loaded = std::min(data.loadedBuckets, data.bucketCount);
    return {std::min(first, loaded), std::min(last, loaded)};
}

double playheadX(double frame, int64_t totalFrames, double width) {
    if (totalFrames <= 0) { return 0; }
    return std::round(frame / double(totalFrames) * width) - 0.5;
}

Span span(int64_t lower, int64_t upper, int64_t totalFrames, double width) {
    if (totalFrames <= 0) { return {}; }
    const double scale = width / double(totalFrames);
    return {double(lower) * scale, double(upper - lower) * scale};
}

void paintLanes(QPainter& painter, const QSizeF& size, double dpr, const WaveformData* data, int64_t totalFrames,
                const std::vector<std::string>& labels, const WaveformColors& colors) {
    const size_t lanes = data && data->channels > 0 ? size_t(data->channels) : std::min(labels.size(), maxLanes);
    if (lanes == 0 || size.isEmpty()) { return; }
    const double laneHeight = size.height() / double(lanes);
    const double gain = data ? viewGain(peak(*data)) : 1;

    painter.save();
    painter.scale(1 / dpr, 1 / dpr);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colors.wave);
    const int columns = int(std::lround(size.width() * dpr));
    for (size_t lane = 0; lane < lanes; ++lane) {
        const double top = laneHeight * dpr * double(lane);
        if (lane > 0) { painter.fillRect(QRectF(0, std::round(top), columns, 1), colors.separator); }
        if (!data || lane >= data->mins.size() || lane >= data->maxs.size()) { continue; }
        const double middle = top + laneHeight * dpr / 2;
        const double scale = gain * laneFill * laneHeight * dpr;
        painter.drawRects(laneColumns(*data, lane, totalFrames, columns, middle, scale));
    }
    painter.restore();
    paintBands(painter, size, labels, colors, laneHeight);

    painter.setRenderHint(QPainter::Antialiasing);
    painter.setFont(labelFont(laneHeight));
    const size_t labelled = laneHeight < minLabelLane ? 0 : std::min(lanes, labels.size());
    for (size_t lane = 0; lane < labelled; ++lane) {
        paintLabel(painter, {labelInset, laneHeight * double(lane) + 1}, Qt::AlignLeft,
                   QString::fromStdString(labels[lane]), colors);
    }
    painter.setFont(labelFont(size.height()));
    paintLabel(painter, {size.width() - labelInset, 1}, Qt::AlignRight, gainText(gain), colors);
}

}  // namespace brindlehum::WaveformPicture
