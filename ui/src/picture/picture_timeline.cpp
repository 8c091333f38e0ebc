// Draws the waveform, lanes, flags and axes of an analysis picture.
#include "picture/picture_timeline.h"

#include <QPolygonF>
#include <algorithm>
#include <cmath>

#include "ui/picture/ruler_ticks.h"
#include "ui/picture/waveform_picture.h"

namespace brindlehum {
namespace {

constexpr double flagHeight = 20;
constexpr double flagRow = 23;
constexpr double tickLane = 8;

QColor faint(QColor color, int alpha) {
    color.setAlpha(alpha);
    return color;
}

// Pins at one boundary share a flag.
struct Flag {
    QString text;
    double x = 0;
    double width = 0;
    QColor color;
    QRectF place;
};

std::vector<Flag> flagsOf(const std::vector<PinMark>& marks) {
    std::vector<Flag> flags;
    std::vector<int> boundaries;
    for (const PinMark& mark : marks) {
        const auto at = std::ranges::find(boundaries, mark.boundary);
        if (at == boundaries.end()) {
            boundaries.push_back(mark.boundary);
            flags.push_back({mark.name, mark.seconds, 0, mark.color, {}});
        } else {
            Flag& flag = flags[size_t(at - boundaries.begin())];
            flag.text += QStringLiteral(" · ") + mark.name.toLower();
        }
    }
    return flags;
}

// Puts every flag into the lowest row where it overlaps no other; returns the number of rows.
int arrange(std::vector<Flag>& flags, double left, double right) {
    std::vector<QRectF> taken;
    int rows = 0;
    for (Flag& flag : flags) {
        const bool leans = flag.x + flag.width > right;
        const double x = std::max(left, leans ? flag.x - flag.width + 1 : flag.x);
        int row = 0;
        const auto place = [&] { return QRectF(x, row * flagRow, flag.width, flagHeight); };
        const auto meets = [&](const QRectF& other) { return place().adjusted(-5, 0, 5, 0).intersects(other); };
        while (std::ranges::any_of(taken, meets)) { ++row; }
        flag.place = place();
        taken.push_back(flag.place);
        rows = std::max(rows, row + 1);
    }
    return rows;
}

struct Column {
    float low = 0;
    float high = 0;
    float rms = 0;
};

Column columnOf(const SignalView& x, int64_t from, int64_t to) {
    Column column;
    std::vector<float> buffer;
    const std::span<const float> part = x.range(from, std::max(to, from + 1), buffer);
    if (part.empty()) { return column; }
    double squares = 0;
    for (const float value : part) {
        column.low = std::min(column.low, value);
        column.high = std::max(column.high, value);
        squares += double(value) * value;
    }
    column.rms = float(std::sqrt(squares / double(part.size())));
    return column;
}

float peakOf(const SignalView& x) {
    constexpr int64_t block = 65536;
    std::vector<float> buffer;
    float peak = 0;
    for (int64_t at = 0; at < x.size(); at += block) {
        for (const float value : x.range(at, at + block, buffer)) { peak = std::max(peak, std::abs(value)); }
    }
    return peak;
}

}  // namespace

PictureTimeline::PictureTimeline(const PictureCanvas& canvas, const AnalysisPicture::Content& content,
                                 const AnalysisPicture::Part& part, double left, double width)
    : canvas_(canvas), content_(content), left_(left), width_(width), part_(part) {
    gain_ = WaveformPicture::viewGain(content.peak ? *content.peak : peakOf(content.mono));
    if (!content.analysis) { return; }
    bounds_ = content.analysis->grid.boundaries();
    marks_ = pinMarks(*content.analysis, canvas.theme);
}

double PictureTimeline::spacingOf(size_t count) const {
    const double whole = part_.seconds > 0 ? content_.seconds() / part_.seconds : 1;
    return width_ * whole / std::max<double>(double(count), 1);
}

double PictureTimeline::flags(double top) const {
    std::vector<Flag> flags = flagsOf(marks_);
    const TextStyle style{12, canvas_.theme.dark ? QColor("#111317") : QColor("#ffffff"), true};
    for (Flag& flag : flags) {
        flag.x = x(flag.x);
        flag.width = PictureCanvas::width(flag.text, style) + 14;
    }
    const int rows = arrange(flags, left_, left_ + width_);
    const double bottom = top + rows * flagRow;
    // Row 0 is the lowest, and the poles of the other rows pass behind it.
    for (Flag& flag : flags) {
        flag.place.translate(0, bottom - 2 * flag.place.top() - flagRow);
        canvas_.hairline({flag.x, flag.place.top() + 3}, {flag.x, bottom}, flag.color);
    }
    for (const Flag& flag : flags) {
        const QRectF& place = flag.place;
        canvas_.painter.setPen(Qt::NoPen);
        canvas_.painter.setBrush(flag.color);
        canvas_.painter.drawRoundedRect(place, 3, 3);
        canvas_.text(place, Qt::AlignCenter, flag.text, style);
    }
    return bottom;
}

double PictureTimeline::sections(double top) const {
    constexpr double height = 18;
    if (bounds_.empty()) { return top; }
    const Pins& pins = content_.analysis->structure.pins;
    const auto at = [this](int boundary) { return bounds_[size_t(std::clamp(boundary, 0, int(bounds_.size()) - 1))]; };
    const auto section = [&](double from, double to, const char* name, PinColor color) {
        const QRectF place(x(from), top, x(to) - x(from), height);
        if (place.width() < 1) { return; }
        const QColor ink = pinColor(color, canvas_.theme);
        canvas_.painter.fillRect(place, faint(ink, canvas_.theme.dark ? 64 : 44));
        const QString text = QString::fromLatin1(name);
        const TextStyle style{11, canvas_.theme.text};
        if (PictureCanvas::width(text, style) + 8 < place.width()) {
            canvas_.text(place, Qt::AlignCenter, text, style);
        }
    };
    if (pins.introEnd > content_.analysis->structure.profile.musicStartBar) {
        section(pins.startTime, at(pins.introEnd), "Intro", PinColor::introEnd);
    }
    section(at(pins.loopStart), at(pins.loopEnd), pins.loopFile ? "Seamless loop" : "Loop", PinColor::loop);
    section(at(std::max(pins.endingStart, pins.loopEnd)), at(pins.musicEnd), "Ending", PinColor::endingStart);
    return top + height + 2;
}

double PictureTimeline::bars(double top) const {
    constexpr double numberHeight = 16;
    const auto count = int(bounds_.size()) - 1;
    const double spacing = spacingOf(bounds_.size() - 1);
    const TextStyle style = canvas_.small();
    const int step = thinning(spacing, PictureCanvas::width(QString::number(count), style) + 10);
    double free = left_ - 1;  // where the last number ended
    for (int bar = 0; bar < count; bar += step) {
        const double at = x(bounds_[size_t(bar)]) + 2;
        const QString number = QString::number(bar + 1);
        const double end = at + PictureCanvas::width(number, style) + 1;
        if (at < free || end > left_ + width_) { continue; }
        canvas_.text({at, top, end - at, numberHeight}, Qt::AlignLeft | Qt::AlignVCenter, number, style);
        free = end + 6;
    }
    const double laneTop = top + numberHeight;
    const auto& beats = content_.analysis->grid.beats;
    if (spacingOf(beats.size()) >= 4) {
        for (const double beat : beats) {
            if (!isInSight(beat)) { continue; }
            canvas_.hairline({x(beat), laneTop + 3}, {x(beat), laneTop + tickLane}, canvas_.theme.secondary);
        }
    }
    const int lines = thinning(spacing, 5);
    for (int bar = 0; bar <= count; bar += lines) {
        const double at = x(bounds_[size_t(bar)]);
        if (!isInSight(bounds_[size_t(bar)])) { continue; }
        canvas_.hairline({at, laneTop - (bar % step == 0 ? 4 : 0)}, {at, laneTop + tickLane}, canvas_.theme.text);
    }
    return laneTop + tickLane;
}

void PictureTimeline::barLines(double top, double bottom) const {
    const auto count = int(bounds_.size()) - 1;
    const int step = thinning(spacingOf(bounds_.size() - 1), 5);
    for (int bar = 0; bar <= count; bar += step) {
        if (!isInSight(bounds_[size_t(bar)])) { continue; }
        const double at = x(bounds_[size_t(bar)]);
        canvas_.hairline({at, top}, {at, bottom}, faint(canvas_.theme.secondary, canvas_.theme.dark ? 70 : 60));
    }
}

double PictureTimeline::waveform(double top, double height) const {
    const WaveformColors& colors = canvas_.theme.waveform;
    QPainter& painter = canvas_.painter;
    painter.fillRect(QRectF(left_, top, width_, height), colors.background);
    barLines(top, top + height);
    const QRectF device = painter.transform().mapRect(QRectF(left_, top, width_, height));
    const double middle = std::round(device.center().y());
    const double scale = gain_ * device.height() * 0.48;
    const auto columns = int(std::lround(device.width()));
    const double first = part_.first * content_.monoRate;
    const double perColumn = part_.seconds * content_.monoRate / std::max(columns, 1);
    painter.save();
    painter.resetTransform();
    const QColor outer = faint(colors.wave, canvas_.theme.dark ? 150 : 130);
    for (int c = 0; c < columns; ++c) {
        const Column column =
            columnOf(content_.mono, int64_t(first + c * perColumn), int64_t(first + (c + 1) * perColumn));
        const auto bar = [&](double high, double low, const QColor& color) {
            const double upper = std::floor(middle - high * scale);
            const double lower = std::ceil(middle - low * scale);
            painter.fillRect(QRectF(std::floor(device.left()) + c, upper, 1, std::max(1.0, lower - upper)), color);
        };
        bar(column.high, column.low, outer);
        bar(std::min(column.rms, column.high), std::max(-column.rms, column.low), colors.wave);
    }
    painter.restore();
    return top + height;
}

void PictureTimeline::viewGain(double top) const {
    const QString gainText = WaveformPicture::gainText(gain_);
    if (gainText.isEmpty()) { return; }
    const double textWidth = PictureCanvas::width(gainText, canvas_.small());
    const QRectF plate(left_ + width_ - textWidth - 12, top + 4, textWidth + 8, 16);
    canvas_.painter.setPen(Qt::NoPen);
    canvas_.painter.setBrush(canvas_.theme.waveform.labelPlate);
    canvas_.painter.drawRoundedRect(plate, 3, 3);
    canvas_.text(plate, Qt::AlignCenter, gainText, canvas_.small());
}

double PictureTimeline::ruler(double top) const {
    const TextStyle style = canvas_.small();
    constexpr double spacing = 84;
    const double step = RulerTicks::step(part_.seconds, width_, spacing);
    for (const auto& tick : RulerTicks::ticks(part_.first, part_.seconds, width_, spacing)) {
        const double at = x(tick.seconds);
        canvas_.hairline({at, top}, {at, top + (tick.major ? 8 : 4)}, canvas_.theme.secondary);
        if (!tick.major) { continue; }
        const QString label = QString::fromStdString(RulerTicks::label(tick.seconds, step));
        const double labelWidth = PictureCanvas::width(label, style) + 2;
        const double labelLeft = std::clamp(at - labelWidth / 2, left_, left_ + width_ - labelWidth);
        canvas_.text({labelLeft, top + 9, labelWidth, 14}, Qt::AlignCenter, label, style);
    }
    return top + 24;
}

double PictureTimeline::novelty(double top, double height) const {
    canvas_.heading({left_, top}, QStringLiteral("Novelty at the bar lines"));
    top += 20;
    QPainter& painter = canvas_.painter;
    painter.fillRect(QRectF(left_, top, width_, height), canvas_.theme.waveform.background);
    barLines(top, top + height);
    const auto& novelty = content_.analysis->structure.novelty;
    QPolygonF curve;
    const auto count = std::min(novelty.size(), bounds_.size());
    for (size_t i = 0; i < count; ++i) {
        curve << QPointF(x(bounds_[i]), top + height - 1 - (height - 6) * std::clamp(novelty[i], 0.0, 1.0));
    }
    if (curve.isEmpty()) { return top + height; }
    QPolygonF area = curve;
    area << QPointF(curve.back().x(), top + height) << QPointF(curve.front().x(), top + height);
    painter.setPen(Qt::NoPen);
    painter.setBrush(faint(canvas_.theme.waveform.playhead, 60));
    painter.drawPolygon(area);
    painter.setPen(QPen(canvas_.theme.waveform.playhead, 1.4));
    painter.drawPolyline(curve);
    return top + height;
}

void PictureTimeline::pinLines(double top, double bottom) const {
    // If several pins share a boundary, the line has the colour of their flag, which is the first pin's.
    for (auto mark = marks_.rbegin(); mark != marks_.rend(); ++mark) {
        canvas_.hairline({x(mark->seconds), top}, {x(mark->seconds), bottom}, mark->color);
    }
}

}  // namespace brindlehum
