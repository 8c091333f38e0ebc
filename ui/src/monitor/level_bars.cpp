// Paints a scale, and a bar, a held peak and a count of overs for each channel.
#include "ui/monitor/level_bars.h"

#include <QCoreApplication>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QToolTip>
#include <algorithm>

#include "ui/look/theme.h"

namespace brindlehum {
namespace {

// Logical pixels.
constexpr double widest = 32;  // a channel with its gap
constexpr double gap = 2;
constexpr double scaleWidth = 24;
constexpr double overHeight = 12;
constexpr double holdHeight = 2;
constexpr double textPoints = 8;
constexpr double overPoints = 7;

constexpr int scaleDb[] = {0, -6, -12, -18, -24, -36, -48, -60};
constexpr int mostShown = 99;  // overs; more of them are a plus

QString dbText(double db) {
    return db <= MeterLevel::floor ? QCoreApplication::translate("LevelBars", "silent")
                                   : QString::asprintf("%.1f dBFS", db);
}

}  // namespace

LevelBars::LevelBars(MonitorMeter& meter, Of of, QWidget* parent) : QWidget(parent), meter_(meter), of_(of) {
    setAccessibleName(of == Of::bus ? tr("Bus meter") : tr("Speaker meter"));
    setAccessibleDescription(tr("Peak levels in dBFS. Space clears the overs."));
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    QFont small = font();
    small.setPointSizeF(textPoints);
    setFont(small);
    connect(&meter, &MonitorMeter::changed, this, qOverload<>(&QWidget::update));
}

const std::vector<MonitorMeter::Channel>& LevelBars::channels() const {
    return of_ == Of::bus ? meter_.bus() : meter_.speakers();
}

double LevelBars::pitch() const {
    return std::min((width() - scaleWidth) / double(std::max<size_t>(channels().size(), 1)), widest);
}

double LevelBars::foot() const {
    return height() - 2 * lineHeight() - 2;
}

double LevelBars::lineHeight() const {
    return fontMetrics().ascent() + 2;
}

// Names that are wider than their bars stand on two lines in turn.
bool LevelBars::isCrowded() const {
    return std::ranges::any_of(channels(), [this](const auto& each) {
        return fontMetrics().horizontalAdvance(QString::fromStdString(each.label)) + 2 > pitch();
    });
}

double LevelBars::yOf(double db) const {
    const double top = overHeight + 3;
    return top + std::clamp(db / MeterLevel::floor, 0.0, 1.0) * (foot() - top);
}

QRectF LevelBars::bar(size_t channel) const {
    return {scaleWidth + double(channel) * pitch() + gap / 2, yOf(0), pitch() - gap, foot() - yOf(0)};
}

void LevelBars::paintScale(QPainter& painter) const {
    const Theme& theme = Theme::current();
    const double right = scaleWidth + double(channels().size()) * pitch();
    const double line = painter.fontMetrics().height();
    double next = 0;  // the lowest free pixel
    for (const int db : scaleDb) {
        const double y = yOf(db);
        painter.setPen(theme.border);
        painter.drawLine(QPointF(scaleWidth - 3, y), QPointF(right, y));
        const double top = std::max(y - line / 2, 0.0);
        if (top < next || top + line > height() - line / 2) { continue; }
        painter.setPen(theme.secondary);
        painter.drawText(QRectF(0, top, scaleWidth - 5, line), Qt::AlignRight | Qt::AlignVCenter, QString::number(db));
        next = top + line - 2;
    }
}

void LevelBars::paintChannel(QPainter& painter, size_t channel) const {
    const Theme& theme = Theme::current();
    const auto& [speaker, label, level, highest, overs] = channels()[channel];
    const QRectF whole = bar(channel);
    const auto from = [&](double db, double height) { return QRectF(whole.left(), yOf(db), whole.width(), height); };
    if (level.level > MeterLevel::floor) {
        painter.fillRect(from(level.level, whole.bottom() - yOf(level.level)), theme.waveform.wave);
    }
    if (level.hold > MeterLevel::floor) { painter.fillRect(from(level.hold, holdHeight), theme.text); }
    if (overs > 0) {
        const QRectF mark(whole.left(), 0, whole.width(), overHeight);
        painter.fillRect(mark, theme.over);
        QFont font = this->font();
        font.setPointSizeF(overPoints);
        painter.setFont(font);
        painter.setPen(contrast(theme.over, Qt::white) > contrast(theme.over, Qt::black) ? Qt::white : Qt::black);
        painter.drawText(mark, Qt::AlignCenter, overs > mostShown ? QString("+") : QString::number(overs));
        painter.setFont(this->font());
    }
    const double line = isCrowded() && channel % 2 == 1 ? lineHeight() : 0;
    painter.setPen(theme.secondary);
    painter.drawText(QRectF(whole.center().x() - widest, foot() + 2 + line, 2 * widest, lineHeight()), Qt::AlignCenter,
                     QString::fromStdString(label));
}

void LevelBars::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    for (size_t channel = 0; channel < channels().size(); ++channel) {
        painter.fillRect(bar(channel), Theme::current().waveform.background);
    }
    paintScale(painter);
    for (size_t channel = 0; channel < channels().size(); ++channel) { paintChannel(painter, channel); }
    if (hasFocus()) {
        painter.setPen(QPen(Theme::current().accent, 2));
        painter.drawRect(QRectF(rect()).adjusted(1, 1, -1, -1));
    }
}

QString LevelBars::textAt(double x) const {
    const auto channel = size_t(std::max(x - scaleWidth, 0.0) / pitch());
    if (x < scaleWidth || channel >= channels().size()) {
        return of_ == Of::bus ? tr("Peak levels of the bus as it arrives, in dBFS")
                              : tr("Peak levels of what the speakers are given, in dBFS");
    }
    const auto& [speaker, label, level, highest, overs] = channels()[channel];
    const QString name = QString::fromStdString(label);
    if (overs == 0) {
        return tr("%1: %2, highest %3. Click to clear.").arg(name, dbText(level.level), dbText(highest));
    }
    return tr("%1: %2, highest %3, over %4 times. Click to clear.")
        .arg(name, dbText(level.level), dbText(highest), QString::number(overs));
}

bool LevelBars::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip) { return QWidget::event(event); }
    const auto* help = static_cast<QHelpEvent*>(event);
    QToolTip::showText(help->globalPos(), textAt(help->pos().x()), this);
    return true;
}

void LevelBars::mousePressEvent(QMouseEvent* /*event*/) {
    meter_.clearOver();
}

void LevelBars::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_Space) { return QWidget::keyPressEvent(event); }
    meter_.clearOver();
}

}  // namespace brindlehum
