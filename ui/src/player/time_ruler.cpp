// Paints ticks, labels and the time under the pointer.
#include "ui/player/time_ruler.h"

#include <QFontDatabase>
#include <QPainter>
#include <algorithm>

#include "base/time_text.h"
#include "ui/look/theme.h"
#include "ui/picture/ruler_ticks.h"

namespace brindlehum {
namespace {

constexpr double minSpacing = 84;  // logical pixels between two labels
constexpr double labelPoints = 8.5;
constexpr int tickHeight = 4;

}  // namespace

TimeRuler::TimeRuler(QWidget* parent) : QWidget(parent) {
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPointSizeF(labelPoints);
    setFont(font);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setAccessibleName(tr("Time ruler"));
}

void TimeRuler::setSeconds(double first, double seconds) {
    if (first == first_ && seconds == seconds_) { return; }
    first_ = first;
    seconds_ = seconds;
    update();
}

void TimeRuler::setHover(double seconds) {
    if (seconds == hover_) { return; }
    hover_ = seconds;
    update();
}

QSize TimeRuler::sizeHint() const {
    return {200, fontMetrics().height() + tickHeight + 3};
}

void TimeRuler::paintTicks(QPainter& painter) const {
    const Theme& theme = Theme::of(*this);
    const double step = RulerTicks::step(seconds_, width(), minSpacing);
    for (const auto& tick : RulerTicks::ticks(first_, seconds_, width(), minSpacing)) {
        const int x = xOf(tick.seconds);
        const int tall = tick.major ? tickHeight + 3 : tickHeight;
        painter.fillRect(x, height() - tall, 1, tall, tick.major ? theme.secondary : theme.border);
        if (!tick.major) { continue; }
        const QString text = QString::fromStdString(RulerTicks::label(tick.seconds, step));
        const int room = fontMetrics().horizontalAdvance(text);
        if (x + 4 + room > width()) { continue; }
        painter.setPen(theme.secondary);
        painter.drawText(QRect(x + 4, 0, room + 2, height() - 3), Qt::AlignLeft | Qt::AlignVCenter, text);
    }
}

void TimeRuler::paintHover(QPainter& painter) const {
    const Theme& theme = Theme::of(*this);
    // Finer than a pixel, and at least in thousandths.
    const double fine = RulerTicks::step(seconds_, width(), minSpacing) / 100;
    const QString text = QString::fromStdString(fine < 0.001 ? RulerTicks::label(hover_, fine) : timeText(hover_));
    const int room = fontMetrics().horizontalAdvance(text) + 10;
    const int x = xOf(hover_);
    const QRect plate(std::clamp(x - room / 2, 0, std::max(0, width() - room)), 0, room, height());
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(theme.accent);
    painter.drawRoundedRect(plate, 4, 4);
    painter.setPen(theme.onAccent);
    painter.drawText(plate, Qt::AlignCenter, text);
}

void TimeRuler::paintEvent(QPaintEvent* /*event*/) {
    if (seconds_ <= 0) { return; }
    QPainter painter(this);
    paintTicks(painter);
    if (hover_ >= 0) { paintHover(painter); }
}

}  // namespace brindlehum
