// Draws the strip once and the marks over it; turns clicks, wheel and keys into times.
#include "ui/window/bars_strip.h"

#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "base/error.h"
#include "base/time_text.h"
#include "ui/look/theme.h"

namespace brindlehum {
namespace {

constexpr double snapPixels = 6;
constexpr double keyZoom = 2;
constexpr double notchZoom = 1.25;
constexpr double notchShare = 0.1;  // of the view, which a notch of the wheel scrolls
constexpr int notch = 120;
constexpr double firstView = 20;  // seconds

}  // namespace

BarsStrip::BarsStrip(QWidget* parent) : QWidget(parent) {
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setCursor(Qt::CrossCursor);
    setAccessibleName(tr("Bars of the piece"));
    setAccessibleDescription(tr("Click where a bar starts; Left and Right move it by a beat"));
}

void BarsStrip::setContent(const AnalysisPicture::Content& content) {
    content_ = content;
    if (visible_.total != content.mono.size()) {
        visible_ = VisibleRange::all(content.mono.size());
        if (content.seconds() > firstView) { visible_ = zoomed(visible_, content.seconds() / firstView, 0); }
        Q_EMIT viewChanged();
    }
    stale();
}

void BarsStrip::setDownbeat(std::optional<double> seconds) {
    downbeat_ = seconds;
    update();
}

void BarsStrip::setPlayhead(std::optional<double> seconds) {
    if (playhead_ == seconds) { return; }
    playhead_ = seconds;
    update();
}

void BarsStrip::setVisibleRange(const VisibleRange& visible) {
    const double most = longestView * content_.monoRate;
    if (visible == visible_ || (visible.length > most && visible.length > visible_.length)) { return; }
    visible_ = visible;
    stale();
    Q_EMIT viewChanged();
}

double BarsStrip::xOf(double seconds) const {
    return visible_.shareOf(seconds * content_.monoRate) * width();
}

double BarsStrip::timeAt(double x) const {
    if (content_.monoRate <= 0) { return 0; }
    const double seconds = visible_.frameAt(x / std::max(width(), 1)) / content_.monoRate;
    const double exact = std::clamp(seconds, 0.0, content_.seconds());
    if (!content_.analysis || content_.analysis->grid.beats.empty()) { return exact; }
    const double beat =
        *std::ranges::min_element(content_.analysis->grid.beats, {}, [exact](double t) { return std::abs(t - exact); });
    return std::abs(xOf(beat) - x) <= snapPixels ? beat : exact;
}

// A number of beats after the bar start that is set, or else after the first one found.
std::optional<double> BarsStrip::beatBeside(int beats) const {
    if (!content_.analysis || content_.analysis->grid.beats.empty()) { return std::nullopt; }
    const MusicGrid& grid = content_.analysis->grid;
    const double from = downbeat_.value_or(grid.downbeats.empty() ? grid.beats.front() : grid.downbeats.front());
    const auto nearest = std::ranges::min_element(grid.beats, {}, [from](double t) { return std::abs(t - from); });
    const auto at = nearest - grid.beats.begin() + beats;
    if (at < 0 || at >= std::ssize(grid.beats)) { return std::nullopt; }
    return grid.beats[size_t(at)];
}

void BarsStrip::stale() {
    picture_ = {};
    update();
}

void BarsStrip::paintMark(QPainter& painter, double seconds, const QColor& color, const QString& label) const {
    const double x = std::round(xOf(seconds));
    if (x < 0 || x > width()) { return; }
    painter.fillRect(QRectF(std::min(x, width() - 1.0), 0, label.isEmpty() ? 1 : 2, height()), color);
    if (label.isEmpty()) { return; }
    const double room = painter.fontMetrics().horizontalAdvance(label) + 12;
    const double left = x + room > width() ? x - room : x;
    const QRectF plate(left, height() - 24 - 22, room, 20);
    painter.fillRect(plate, color);
    painter.setPen(color == Theme::current().accent ? Theme::current().onAccent : Theme::current().window);
    painter.drawText(plate, Qt::AlignCenter, label);
}

void BarsStrip::paintEvent(QPaintEvent* /*event*/) {
    const Theme& theme = Theme::current();
    QPainter painter(this);
    if (visible_.total > 0 && picture_.isNull()) {
        const double rate = content_.monoRate;
        const double scale = devicePixelRatioF();
        try {
            picture_ = AnalysisPicture::drawBars(content_, theme, {visible_.first / rate, visible_.length / rate},
                                                 (QSizeF(size()) * scale).toSize(), scale);
        } catch (const Error&) {
            // The samples of a long piece lie on disk. Without them, the marks are drawn alone.
        }
    }
    painter.drawImage(rect(), picture_);
    if (visible_.total == 0) { painter.fillRect(rect(), theme.waveform.background); }
    if (hover_) { paintMark(painter, *hover_, theme.secondary, QString::fromStdString(timeText(*hover_))); }
    if (playhead_) { paintMark(painter, *playhead_, theme.waveform.playhead, {}); }
    if (downbeat_) {
        paintMark(painter, *downbeat_, theme.accent,
                  tr("Bar starts %1").arg(QString::fromStdString(timeText(*downbeat_))));
    }
    if (hasFocus()) {
        painter.setPen(QPen(theme.accent, 2));
        painter.drawRect(rect().adjusted(1, 1, -1, -1));
    }
}

void BarsStrip::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    stale();
}

void BarsStrip::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || visible_.total == 0) { return event->ignore(); }
    Q_EMIT chosen(timeAt(event->position().x()));
}

void BarsStrip::mouseMoveEvent(QMouseEvent* event) {
    if (visible_.total == 0) { return; }
    hover_ = timeAt(event->position().x());
    update();
}

void BarsStrip::leaveEvent(QEvent* event) {
    QWidget::leaveEvent(event);
    hover_.reset();
    update();
}

void BarsStrip::wheelEvent(QWheelEvent* event) {
    const QPoint turned = event->angleDelta();
    const int most = std::abs(turned.x()) > std::abs(turned.y()) ? turned.x() : turned.y();
    const double notches = double(most) / notch;
    if (visible_.total == 0 || notches == 0) { return event->ignore(); }
    if (event->modifiers().testFlag(Qt::ControlModifier)) {
        setVisibleRange(zoomed(visible_, std::pow(notchZoom, notches), event->position().x() / std::max(width(), 1)));
    } else {
        setVisibleRange(scrolled(visible_, -notches * notchShare * visible_.length));
    }
    event->accept();
}

void BarsStrip::keyPressEvent(QKeyEvent* event) {
    const auto choose = [this](int beats) {
        if (const auto beat = beatBeside(beats)) { Q_EMIT chosen(*beat); }
    };
    switch (event->key()) {
        case Qt::Key_Left:
            return choose(-1);
        case Qt::Key_Right:
            return choose(1);
        case Qt::Key_Space:
            return playAsked();
        case Qt::Key_PageUp:
            return setVisibleRange(scrolled(visible_, -visible_.length));
        case Qt::Key_PageDown:
            return setVisibleRange(scrolled(visible_, visible_.length));
        case Qt::Key_Plus:
        case Qt::Key_Equal:
            return setVisibleRange(zoomed(visible_, keyZoom, 0.5));
        case Qt::Key_Minus:
            return setVisibleRange(zoomed(visible_, 1 / keyZoom, 0.5));
        default:
            QWidget::keyPressEvent(event);
    }
}

void BarsStrip::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::StyleChange || event->type() == QEvent::PaletteChange) { stale(); }
}

}  // namespace brindlehum
