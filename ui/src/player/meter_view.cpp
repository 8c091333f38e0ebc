// Paints a bar, a held peak and an over-range mark for each output.
#include "ui/player/meter_view.h"

#include <QFontDatabase>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QToolTip>
#include <algorithm>

#include "mix/player/output_meter.h"
#include "ui/look/theme.h"

namespace brindlehum {
namespace {

// Logical pixels.
constexpr int widePitch = 10;  // from one bar to the next
constexpr int narrowPitch = 6;
constexpr size_t wideOutputs = 4;
constexpr int gap = 1;
constexpr int margin = 3;
constexpr int overHeight = 5;
constexpr int scaleWidth = 20;
constexpr double scalePoints = 7.5;
constexpr double holdHeight = 2;
constexpr int scaleDb[] = {0, -12, -24, -36, -48};

QString dbText(double db) {
    return db <= MeterLevel::floor ? MeterView::tr("silent") : QString::asprintf("%.1f dB", db);
}

}  // namespace

MeterView::MeterView(OutputMeter& meter, QWidget* parent) : QWidget(parent), meter_(meter) {
    setObjectName("outputMeter");
    setAccessibleName(tr("Output meter"));
    setAccessibleDescription(tr("Peak levels of the outputs. Space clears the marks of over-range."));
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPointSizeF(scalePoints);
    setFont(font);
    connect(&meter, &OutputMeter::changed, this, &MeterView::refresh);
    refresh();
}

int MeterView::pitch() const {
    return meter_.outputs().size() <= wideOutputs ? widePitch : narrowPitch;
}

QSize MeterView::sizeHint() const {
    return {2 * margin + scaleWidth + int(meter_.outputs().size()) * pitch(), 100};
}

void MeterView::refresh() {
    if (meter_.outputs().size() != shown_) {
        shown_ = meter_.outputs().size();
        updateGeometry();
    }
    update();
}

double MeterView::yOf(double db) const {
    const double top = margin + overHeight + 1;
    const double share = std::clamp(db / MeterLevel::floor, 0.0, 1.0);
    return top + share * (height() - margin - top);
}

QRectF MeterView::bar(size_t output) const {
    const double top = yOf(0);
    return {double(margin + int(output) * pitch()), top, double(pitch() - gap), height() - margin - top};
}

void MeterView::paintScale(QPainter& painter) const {
    const Theme& theme = Theme::of(*this);
    const int left = margin + int(meter_.outputs().size()) * pitch();
    const double room = painter.fontMetrics().height();
    double next = 0;  // the lowest free pixel
    painter.setPen(theme.secondary);
    for (const int db : scaleDb) {
        const double top = std::max(yOf(db) - room / 2, 0.0);
        if (top < next || top + room > height()) { continue; }
        painter.drawText(QRectF(left, top, scaleWidth, room), Qt::AlignRight | Qt::AlignVCenter, QString::number(db));
        next = top + room;
    }
}

void MeterView::paintOutput(QPainter& painter, size_t output) const {
    const Theme& theme = Theme::of(*this);
    const MeterLevel& level = meter_.outputs()[output].level;
    const QRectF whole = bar(output);
    painter.fillRect(whole, theme.waveform.background);
    if (level.level > MeterLevel::floor) {
        painter.fillRect(QRectF(whole.left(), yOf(level.level), whole.width(), whole.bottom() - yOf(level.level)),
                         theme.waveform.wave);
    }
    if (level.hold > MeterLevel::floor) {
        painter.fillRect(QRectF(whole.left(), yOf(level.hold), whole.width(), holdHeight), theme.text);
    }
    if (level.isOver) { painter.fillRect(QRectF(whole.left(), margin, whole.width(), overHeight), theme.over); }
}

void MeterView::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    for (size_t output = 0; output < meter_.outputs().size(); ++output) { paintOutput(painter, output); }
    paintScale(painter);
    if (hasFocus()) {
        painter.setPen(QPen(Theme::of(*this).accent, 2));
        painter.drawRect(QRectF(rect()).adjusted(1, 1, -1, -1));
    }
}

QString MeterView::textAt(int x) const {
    const int output = (x - margin) / pitch();
    if (x < margin || size_t(output) >= meter_.outputs().size()) { return tr("Peak levels of the outputs, in dBFS"); }
    const auto& [label, channel, level] = meter_.outputs()[size_t(output)];
    QString text = QString::fromStdString(label) + " " + dbText(level.level);
    if (level.hold > MeterLevel::floor) { text += ", " + tr("highest %1").arg(dbText(level.hold)); }
    if (level.isOver) { text += ", " + tr("over (click to clear)"); }
    return text;
}

bool MeterView::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip) { return QWidget::event(event); }
    const auto* help = static_cast<QHelpEvent*>(event);
    QToolTip::showText(help->globalPos(), textAt(help->pos().x()), this);
    return true;
}

void MeterView::mousePressEvent(QMouseEvent* /*event*/) {
    meter_.clearOver();
}

void MeterView::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_Space) { return QWidget::keyPressEvent(event); }
    meter_.clearOver();
}

}  // namespace brindlehum
