#include "ui/monitor/bus_meter.h"

#include <QKeyEvent>
#include <QPainter>
#include <algorithm>

#include "monitor/engine/monitor_meter.h"
#include "ui/look/theme.h"

namespace brindlehum {
namespace {

// Logical pixels.
constexpr double widest = 34;  // a channel with its gap
constexpr double overHeight = 4;
constexpr double holdHeight = 2;
constexpr double textPoints = 8;

}  // namespace

BusMeter::BusMeter(MonitorMeter& meter, QWidget* parent) : QWidget(parent), meter_(meter) {
    setAccessibleName("Bus meter");
    setAccessibleDescription("Peak levels of the bus. Space clears the marks of over-range.");
    setToolTip("Peak levels of the bus as it arrives. Click to clear the marks of over-range.");
    setFocusPolicy(Qt::TabFocus);
    QFont small = font();
    small.setPointSizeF(textPoints);
    setFont(small);
    connect(&meter, &MonitorMeter::changed, this, qOverload<>(&QWidget::update));
}

void BusMeter::paintEvent(QPaintEvent* /*event*/) {
    const Theme& theme = Theme::current();
    QPainter painter(this);
    const auto& channels = meter_.bus();
    const double pitch = std::min(double(width()) / double(std::max<size_t>(channels.size(), 1)), widest);
    const double left = (width() - pitch * double(channels.size())) / 2;
    const double foot = height() - painter.fontMetrics().height() - 2;
    const double top = overHeight + 2;
    const auto yOf = [&](double db) { return top + std::clamp(db / MeterLevel::floor, 0.0, 1.0) * (foot - top); };
    for (size_t i = 0; i < channels.size(); ++i) {
        const double x = left + double(i) * pitch;
        const QRectF bar(x + 2, top, pitch - 4, foot - top);
        const MeterLevel& level = channels[i].level;
        painter.fillRect(bar, theme.waveform.background);
        if (level.level > MeterLevel::floor) {
            painter.fillRect(QRectF(bar.left(), yOf(level.level), bar.width(), foot - yOf(level.level)),
                             theme.waveform.wave);
        }
        if (level.hold > MeterLevel::floor) {
            painter.fillRect(QRectF(bar.left(), yOf(level.hold), bar.width(), holdHeight), theme.text);
        }
        if (level.isOver) { painter.fillRect(QRectF(bar.left(), 0, bar.width(), overHeight), theme.over); }
        painter.setPen(theme.secondary);
        painter.drawText(QRectF(x, foot, pitch, height() - foot), Qt::AlignHCenter | Qt::AlignBottom,
                         QString::fromStdString(channels[i].label));
    }
    if (hasFocus()) {
        painter.setPen(QPen(theme.accent, 2));
        painter.drawRect(QRectF(rect()).adjusted(1, 1, -1, -1));
    }
}

void BusMeter::mousePressEvent(QMouseEvent* /*event*/) {
    meter_.clearOver();
}

void BusMeter::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_Space) { return QWidget::keyPressEvent(event); }
    meter_.clearOver();
}

}  // namespace brindlehum
