// Text, lines, pins and colours for the parts of an analysis picture.
#include "picture/picture_canvas.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <algorithm>
#include <array>
#include <cmath>

#include "ui/picture/ruler_ticks.h"

namespace brindlehum {
namespace {

QColor between(const QColor& a, const QColor& b, double share) {
    const auto mix = [share](double x, double y) { return float(x + (y - x) * share); };
    return QColor::fromRgbF(mix(a.redF(), b.redF()), mix(a.greenF(), b.greenF()), mix(a.blueF(), b.blueF()));
}

}  // namespace

QFont PictureCanvas::font(const TextStyle& style) {
    QFont font = QGuiApplication::font();
    font.setPixelSize(std::max(1, int(style.pixels)));
    font.setBold(style.bold);
    return font;
}

void PictureCanvas::text(const QRectF& place, int flags, const QString& text, const TextStyle& style) const {
    painter.setFont(font(style));
    painter.setPen(style.color);
    if ((flags & Qt::TextWordWrap) != 0) {
        painter.drawText(place, flags, text);
        return;
    }
    // A file's name may hold line breaks and direction marks, which must not move it out of its place.
    const QFontMetricsF metrics(painter.font());
    painter.drawText(place, flags | Qt::TextSingleLine | Qt::AlignAbsolute,
                     metrics.elidedText(text, Qt::ElideMiddle, place.width()));
}

double PictureCanvas::width(const QString& text, const TextStyle& style) {
    return QFontMetricsF(font(style)).horizontalAdvance(text);
}

void PictureCanvas::heading(const QPointF& corner, const QString& text) const {
    QFont capitals = font({11, {}, true});
    capitals.setLetterSpacing(QFont::AbsoluteSpacing, 0.8);
    painter.setFont(capitals);
    painter.setPen(theme.secondary);
    painter.drawText(QRectF(corner, QSizeF(400, 16)), Qt::AlignLeft | Qt::AlignVCenter, text.toUpper());
}

void PictureCanvas::hairline(QPointF from, QPointF to, const QColor& color) const {
    const QTransform device = painter.transform();
    const QPointF a = device.map(from);
    const QPointF b = device.map(to);
    painter.save();
    painter.resetTransform();
    const QRectF line(QPointF(std::floor(a.x()), std::floor(a.y())),
                      QSizeF(std::max(1.0, std::round(b.x() - a.x())), std::max(1.0, std::round(b.y() - a.y()))));
    painter.fillRect(line, color);
    painter.restore();
}

QColor PictureCanvas::ramp(double value) const {
    static const std::array<QColor, 5> dark = {QColor("#101216"), QColor("#173a4a"), QColor("#1f7a78"),
                                               QColor("#7cc98a"), QColor("#fbf3b4")};
    static const std::array<QColor, 5> light = {QColor("#ffffff"), QColor("#cfe6d6"), QColor("#6fbcb0"),
                                                QColor("#1d6f80"), QColor("#14233f")};
    const auto& stops = theme.dark ? dark : light;
    const double at = std::clamp(value, 0.0, 1.0) * double(stops.size() - 1);
    const auto first = std::min(size_t(at), stops.size() - 2);
    return between(stops[first], stops[first + 1], at - double(first));
}

QColor pinColor(PinColor pin, const Theme& theme) {
    static const std::array<QColor, 6> dark = {QColor("#a6aeb9"), QColor("#7ab8ff"), QColor("#c3a2ff"),
                                               QColor("#ffb056"), QColor("#ff8080"), QColor("#ff8fd0")};
    static const std::array<QColor, 6> light = {QColor("#545c68"), QColor("#1760b8"), QColor("#6a3fc0"),
                                                QColor("#9a5200"), QColor("#b3261e"), QColor("#a8206f")};
    return (theme.dark ? dark : light)[size_t(pin)];
}

std::vector<PinMark> pinMarks(const MusicAnalysis& analysis, const Theme& theme) {
    const Pins& pins = analysis.structure.pins;
    const std::vector<double> bounds = analysis.grid.boundaries();
    std::vector<PinMark> marks;
    const auto add = [&](const char* name, int boundary, PinColor color) {
        if (boundary < 0 || boundary >= std::ssize(bounds)) { return; }
        marks.push_back({QString::fromLatin1(name), boundary, bounds[size_t(boundary)], pinColor(color, theme)});
    };
    if (pins.startTime > 0) {
        const auto at = std::ranges::lower_bound(bounds, pins.startTime - 1e-6);
        add("Start", int(at - bounds.begin()), PinColor::start);
    }
    add("Intro end", pins.introEnd, PinColor::introEnd);
    add("Loop start", pins.loopStart, PinColor::loop);
    add("Loop end", pins.loopEnd, PinColor::loop);
    add("Ending start", pins.endingStart, PinColor::endingStart);
    add("Final hit", pins.finalHit, PinColor::finalHit);
    add("Music end", pins.musicEnd, PinColor::musicEnd);
    return marks;
}

QString clockText(double seconds) {
    return QString::fromStdString(RulerTicks::label(seconds, 0.1));
}

int thinning(double spacing, double least) {
    int step = 1;
    while (spacing * step < least && step < (1 << 24)) { step *= 2; }
    return step;
}

}  // namespace brindlehum
