// Paints a waveform and feeds mouse and keys to its gesture.
#include "ui/player/waveform_view.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QToolTip>
#include <cmath>

#include "ui/look/file_drag.h"

namespace brindlehum {
namespace {

constexpr double arrowShare = 0.01;  // of the file, one arrow key
constexpr double shiftSeconds = 5;   // one arrow key with Shift
constexpr double minDragWidth = 8;   // logical pixels of a dragged selection's picture
constexpr int minHeight = 28;        // logical pixels

}  // namespace

WaveformView::WaveformView(Style style, QWidget* parent) : QWidget(parent), style_(style) {
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMinimumHeight(minHeight);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setCursor(Qt::IBeamCursor);
    setAccessibleName("Waveform");
    setAccessibleDescription(
        "Click to play from there, drag to select, Control-drag to take the file out. Left and Right move the "
        "playhead, Home and End jump, Space plays or stops, Escape clears the selection.");
}

void WaveformView::setData(WaveformPtr overview) {
    if (overview == data_) { return; }
    data_ = std::move(overview);
    stale();
}

void WaveformView::setTotalFrames(int64_t frames, double sampleRate) {
    sampleRate_ = sampleRate;
    if (frames == totalFrames_) { return; }
    totalFrames_ = frames;
    stale();
}

void WaveformView::setLaneLabels(std::vector<std::string> labels) {
    if (labels == labels_) { return; }
    labels_ = std::move(labels);
    stale();
}

void WaveformView::setSelection(std::optional<FrameRange> selection) {
    if (!std::holds_alternative<WaveformGesture::Selecting>(gesture_)) { showSelection(selection); }
}

void WaveformView::showSelection(std::optional<FrameRange> selection) {
    if (selection == selection_) { return; }
    selection_ = selection;
    update();
}

void WaveformView::setPlayhead(double frame) {
    const QRect before = playheadRect();
    playhead_ = frame;
    const QRect after = playheadRect();
    if (after == before) { return; }
    update(before);
    update(after);
}

void WaveformView::stale() {
    pictureStale_ = true;
    update();
}

const WaveformColors& WaveformView::colors() const {
    const Theme& theme = Theme::current();
    return style_ == Style::hud ? theme.hudWaveform : theme.waveform;
}

QRect WaveformView::playheadRect() const {
    if (totalFrames_ <= 0) { return {}; }
    const double x = WaveformPicture::playheadX(playhead_, totalFrames_, width());
    return QRectF(x, 0, WaveformPicture::playheadWidth, height()).toAlignedRect();
}

void WaveformView::ensurePicture() {
    const QSize wanted = (QSizeF(size()) * devicePixelRatioF()).toSize();
    if (!pictureStale_ && picture_.size() == wanted) { return; }
    picture_ = QPixmap(wanted);
    picture_.setDevicePixelRatio(devicePixelRatioF());
    picture_.fill(Qt::transparent);
    QPainter painter(&picture_);
    WaveformPicture::paintLanes(painter, QSizeF(size()), devicePixelRatioF(), data_.get(), totalFrames_, labels_,
                                colors());
    pictureStale_ = false;
    ++pictureCount_;
}

void WaveformView::paintSelection(QPainter& painter) const {
    if (!selection_) { return; }
    const auto span = WaveformPicture::span(selection_->lower, selection_->upper, totalFrames_, width());
    const QRectF area(span.x, 0, std::max(span.width, 1.0), height());
    painter.fillRect(area, colors().selection);
    QColor edge = colors().selection;
    edge.setAlpha(std::min(255, edge.alpha() * 4));
    painter.fillRect(QRectF(area.left(), 0, 1, height()), edge);
    painter.fillRect(QRectF(area.right() - 1, 0, 1, height()), edge);
}

void WaveformView::paintEvent(QPaintEvent* event) {
    ensurePicture();
    QPainter painter(this);
    painter.setClipRect(event->rect());
    painter.fillRect(event->rect(), colors().background);
    paintSelection(painter);
    painter.drawPixmap(0, 0, picture_);
    if (totalFrames_ > 0) {
        const double x = WaveformPicture::playheadX(playhead_, totalFrames_, width());
        painter.fillRect(QRectF(x, 0, WaveformPicture::playheadWidth, height()), colors().playhead);
    }
    if (hasFocus()) {
        painter.setPen(QPen(Theme::current().accent, 2));
        painter.drawRect(QRectF(rect()).adjusted(1, 1, -1, -1));
    }
}

void WaveformView::feed(const WaveformGesture::Event& event, const QPoint& at) {
    using namespace WaveformGesture;
    // Until a cut of the file can be exported, a drag from inside the selection draws a new one.
    const Surface surface{double(width()), totalFrames_, selection_, false};
    const Step next = step(gesture_, event, surface);
    gesture_ = next.next;
    if (const auto* preview = std::get_if<Preview>(&next.action)) { showSelection(preview->range); }
    if (const auto* select = std::get_if<Select>(&next.action)) {
        showSelection(select->range);
        if (onSelect) { onSelect(select->range); }
    }
    if (const auto* seek = std::get_if<Seek>(&next.action); seek && onSeek) { onSeek(seek->frame); }
    if (const auto* drag = std::get_if<StartDrag>(&next.action)) { startDrag(drag->selectionOnly, at); }
}

void WaveformView::startDrag(bool selectionOnly, const QPoint& at) {
    const auto file = exportForDrag ? exportForDrag(selectionOnly) : std::nullopt;
    if (file) {
        QRectF area(rect());
        if (selectionOnly && selection_) {
            const auto span = WaveformPicture::span(selection_->lower, selection_->upper, totalFrames_, width());
            area = QRectF(span.x, 0, std::max(span.width, minDragWidth), height());
        }
        FileDrag::run(this, *file, grab(area.toRect()), at - area.topLeft().toPoint());
    }
    gesture_ = WaveformGesture::Idle{};
}

void WaveformView::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) { return; }
    const QPointF at = event->position();
    feed(WaveformGesture::Press{{at.x(), at.y()}, event->modifiers().testFlag(Qt::ControlModifier)}, at.toPoint());
}

void WaveformView::mouseMoveEvent(QMouseEvent* event) {
    const QPointF at = event->position();
    Q_EMIT hovered(totalFrames_ > 0 ? frameAt(at.x()) : -1);
    if (event->buttons().testFlag(Qt::LeftButton)) { feed(WaveformGesture::Move{{at.x(), at.y()}}, at.toPoint()); }
}

void WaveformView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) { return; }
    const QPointF at = event->position();
    feed(WaveformGesture::Release{{at.x(), at.y()}}, at.toPoint());
}

void WaveformView::leaveEvent(QEvent* event) {
    QWidget::leaveEvent(event);
    Q_EMIT hovered(-1);
}

bool WaveformView::seekBy(QKeyEvent* event) {
    const bool far = event->modifiers().testFlag(Qt::ShiftModifier);
    const double step = far ? shiftSeconds * sampleRate_ : arrowShare * double(totalFrames_);
    double frame = playhead_;
    switch (event->key()) {
        case Qt::Key_Left:
            frame -= step;
            break;
        case Qt::Key_Right:
            frame += step;
            break;
        case Qt::Key_Home:
            frame = 0;
            break;
        case Qt::Key_End:
            frame = double(totalFrames_);
            break;
        default:
            return false;
    }
    if (totalFrames_ > 0 && onSeek) { onSeek(std::clamp(int64_t(frame), int64_t{0}, totalFrames_)); }
    return true;
}

void WaveformView::keyPressEvent(QKeyEvent* event) {
    if (seekBy(event)) { return; }
    if (event->key() == Qt::Key_Space && !event->isAutoRepeat() && onTogglePlay) { return onTogglePlay(); }
    if (event->key() == Qt::Key_Escape) {
        const bool drawing = !std::holds_alternative<WaveformGesture::Idle>(gesture_);
        feed(WaveformGesture::Cancel{}, {});
        if (!drawing && !selection_) { return event->ignore(); }
        showSelection(std::nullopt);
        if (onSelect) { onSelect(std::nullopt); }
        return;
    }
    QWidget::keyPressEvent(event);
}

int WaveformView::lanes() const {
    constexpr size_t most = 16;  // that an overview holds
    return int(data_ ? size_t(data_->channels) : std::min(labels_.size(), most));
}

// Names the lane under the pointer, also where the lanes are too low for their labels.
bool WaveformView::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip || lanes() < 1) { return QWidget::event(event); }
    const auto* help = static_cast<QHelpEvent*>(event);
    const auto lane = size_t(std::clamp(help->pos().y() * lanes() / std::max(height(), 1), 0, lanes() - 1));
    const QString name = lane < labels_.size() ? QString::fromStdString(labels_[lane]) : QString();
    QToolTip::showText(help->globalPos(), name, this);
    return true;
}

void WaveformView::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange) { stale(); }
}

}  // namespace brindlehum
