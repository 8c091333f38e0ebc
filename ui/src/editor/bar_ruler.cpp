// Paints bars, time and pins.
#include "ui/editor/bar_ruler.h"

#include <QCoreApplication>
#include <QFontMetricsF>
#include <algorithm>
#include <cmath>

#include "picture/picture_canvas.h"
#include "ui/editor/editor_gesture.h"
#include "ui/look/theme.h"
#include "ui/picture/ruler_ticks.h"

namespace brindlehum::BarRuler {
namespace {

constexpr double numberPoints = 8.5;
constexpr double flagPoints = 7.5;
constexpr double minLines = 7;  // logical pixels between two lines, as is the next
constexpr double minNumbers = 44;
constexpr double minTimes = 84;

QColor faint(QColor color, int alpha) {
    color.setAlpha(alpha);
    return color;
}

QFont sized(const QPainter& painter, double points, bool bold = false) {
    QFont font = painter.font();
    font.setPointSizeF(points);
    font.setBold(bold);
    return font;
}

// Of times that are too dense, every second, fourth and so on.
void paintLines(QPainter& painter, const QRectF& area, const Bars& bars, const std::vector<double>& times,
                const QColor& color) {
    if (times.size() < 2) { return; }
    const double spacing = (times.back() - times.front()) / double(times.size() - 1) * bars.sampleRate /
                           std::max(bars.visible.length, 1.0) * area.width();
    if (spacing < minLines) { return; }
    for (const double time : times) {
        const double share = bars.visible.shareOf(time * bars.sampleRate);
        if (share < 0 || share > 1) { continue; }
        painter.fillRect(QRectF(std::round(area.left() + share * area.width()), area.top(), 1, area.height()), color);
    }
}

QString flagText(PinKind kind) {
    switch (kind) {
        case PinKind::introEnd:
            return QCoreApplication::translate("BarRuler", "INTRO");
        case PinKind::loopEnd:
            return QCoreApplication::translate("BarRuler", "LOOP");
        default:
            return QCoreApplication::translate("BarRuler", "ENDING");
    }
}

QColor colorOf(PinKind kind) {
    const Theme& theme = Theme::current();
    switch (kind) {
        case PinKind::introEnd:
            return pinColor(PinColor::introEnd, theme);
        case PinKind::loopEnd:
            return pinColor(PinColor::loop, theme);
        default:
            return pinColor(PinColor::endingStart, theme);
    }
}

}  // namespace

void paintBars(QPainter& painter, const QRectF& ruler, double bottom, const Bars& bars) {
    const Theme& theme = Theme::current();
    const QRectF below(ruler.left(), ruler.bottom(), ruler.width(), bottom - ruler.bottom());
    paintLines(painter, below, bars, bars.beats, faint(theme.secondary, 26));
    paintLines(painter, below, bars, bars.boundaries, faint(theme.secondary, bars.isUncertain ? 50 : 90));
    const auto count = int(bars.boundaries.size()) - 1;
    if (count < 1) { return; }
    const double spacing = (bars.boundaries.back() - bars.boundaries.front()) / count * bars.sampleRate /
                           std::max(bars.visible.length, 1.0) * ruler.width();
    const int step = thinning(spacing, minNumbers);
    painter.setFont(sized(painter, numberPoints));
    painter.setPen(bars.isUncertain ? theme.disabled : theme.secondary);
    for (int bar = 0; bar < count; bar += step) {
        const double share = bars.visible.shareOf(bars.boundaries[size_t(bar)] * bars.sampleRate);
        if (share < -0.1 || share > 1) { continue; }
        const double x = std::round(ruler.left() + share * ruler.width());
        painter.fillRect(QRectF(x, ruler.top() + 6, 1, ruler.height() - 6), painter.pen().color());
        painter.drawText(QRectF(x + 4, ruler.top(), minNumbers, ruler.height()), Qt::AlignLeft | Qt::AlignVCenter,
                         QString::number(bar + 1));
    }
}

void paintTime(QPainter& painter, const QRectF& ruler, const VisibleRange& visible, double sampleRate) {
    const Theme& theme = Theme::current();
    const double first = visible.first / sampleRate, seconds = visible.length / sampleRate;
    if (seconds <= 0) { return; }
    const double step = RulerTicks::step(seconds, ruler.width(), minTimes);
    painter.setFont(sized(painter, numberPoints));
    painter.setPen(theme.secondary);
    for (const auto& tick : RulerTicks::ticks(first, seconds, ruler.width(), minTimes)) {
        const double x = std::round(ruler.left() + (tick.seconds - first) / seconds * ruler.width());
        const double tall = tick.major ? 8 : 4;
        painter.fillRect(QRectF(x, ruler.bottom() - tall, 1, tall), tick.major ? theme.secondary : theme.border);
        if (!tick.major) { continue; }
        painter.drawText(QRectF(x + 4, ruler.top(), minTimes, ruler.height() - 4), Qt::AlignLeft | Qt::AlignVCenter,
                         QString::fromStdString(RulerTicks::label(tick.seconds, step)));
    }
}

void paintLoop(QPainter& painter, double from, double to) {
    painter.fillRect(QRectF(from, EditorGesture::rulerHeight - 3, std::max(to - from, 1.0), 3),
                     faint(colorOf(PinKind::loopEnd), 140));
}

void paintPin(QPainter& painter, PinKind kind, double x, double bottom, std::optional<double> next) {
    const QColor color = colorOf(kind);
    painter.setFont(sized(painter, flagPoints, true));
    const QString text = flagText(kind);
    QRectF flag(x, 3, QFontMetricsF(painter.font()).horizontalAdvance(text) + 10, 14);
    if (next && *next >= x && *next < flag.right()) { flag.moveRight(x); }
    painter.fillRect(QRectF(x - 0.5, 3, 1, bottom), color);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawRoundedRect(flag, 2, 2);
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setPen(Theme::current().dark ? QColor("#111317") : QColor("#ffffff"));
    painter.drawText(flag, Qt::AlignCenter, text);
}

QString reasonOf(PinKind kind, const MusicModel& music) {
    if (!music.pins() || !music.analysis()) { return {}; }
    const int boundary = boundaryOf(*music.pins(), kind);
    const QString bar = QString::number(boundary + 1);
    const auto& structure = music.analysis()->structure;
    const bool isMoved = boundary != boundaryOf(structure.pins, kind);
    if (isMoved) { return QCoreApplication::translate("BarRuler", "Set by hand at bar %1").arg(bar); }
    switch (kind) {
        case PinKind::introEnd:
            return QCoreApplication::translate("BarRuler", "The body starts at bar %1").arg(bar);
        case PinKind::endingStart:
            return QCoreApplication::translate("BarRuler", "The ending starts at bar %1").arg(bar);
        default:
            break;
    }
    const auto found = std::ranges::find(structure.loopCandidates, boundary, &LoopCandidate::boundary);
    QString reasons;
    if (found != structure.loopCandidates.end()) {
        for (const auto& reason : found->reasons) {
            reasons += (reasons.isEmpty() ? ": " : ", ") + QString::fromStdString(reason);
        }
    }
    return QCoreApplication::translate("BarRuler", "The loop ends before bar %1").arg(bar) + reasons;
}

}  // namespace brindlehum::BarRuler
