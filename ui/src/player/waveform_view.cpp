// Paints a waveform and feeds mouse and keys to its gesture.
#include "ui/player/waveform_view.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QPointer>
#include <QToolTip>
#include <cmath>

#include "mix/player/pull_source.h"
#include "ui/player/drag_session.h"
#include "ui/player/export_picture.h"

namespace brindlehum {
namespace {

constexpr double arrowShare = 0.01;  // of what is in sight, one arrow key
constexpr double shiftSeconds = 5;   // one arrow key with Shift
constexpr double minDragWidth = 8;   // logical pixels of a dragged selection's picture
constexpr int minHeight = 28;        // logical pixels
constexpr double pageShare = 0.9;    // of what is in sight, one Page key
constexpr double notch = 120;        // of a wheel, in eighths of a degree
constexpr double notchShare = 0.1;   // of what is in sight, scrolled by one notch
constexpr double notchZoom = 1.25;
constexpr int edgeScrollMs = 30;
constexpr double edgeScrollShare = 0.05;                           // of the pointer's distance from the edge, each time
constexpr QSizeF handleSize(2 * WaveformGesture::handleReach, 9);  // of a selection, in logical pixels
constexpr double halo = 1;                                         // of the playhead, in logical pixels on either side

}  // namespace

WaveformView::WaveformView(Style style, QWidget* parent) : QWidget(parent), style_(style) {
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMinimumHeight(minHeight);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setCursor(Qt::IBeamCursor);
    setAccessibleName(tr("Waveform"));
    setAccessibleDescription(tr(
        "Click to play from there, drag to select, drag an edge of the selection to move it, drag the selection itself "
        "to take it out as a file, Control-drag to take the whole sound out. Left and Right move the playhead, Home "
        "and End jump, Space plays or stops. Plus and Minus zoom, 0 "
        "shows all, Z the selection, Page Up and Page Down scroll. The brackets set the selection's start and end at "
        "the playhead, Escape clears it."));
}

void WaveformView::setData(WaveformPtr overview) {
    if (overview == data_) { return; }
    data_ = std::move(overview);
    stale();
}

void WaveformView::setDetail(WaveformPtr detail) {
    if (detail == detail_) { return; }
    detail_ = std::move(detail);
    stale();
}

void WaveformView::setTotalFrames(int64_t frames, double sampleRate) {
    sampleRate_ = sampleRate;
    if (frames != visible_.total) { setVisibleRange(VisibleRange::all(frames)); }
}

void WaveformView::setVisibleRange(const VisibleRange& visible) {
    const VisibleRange before = std::exchange(visible_, visible);
    // A change of following alone changes nothing that is seen.
    if (before.total == visible.total && before.first == visible.first && before.length == visible.length) { return; }
    stale();
    Q_EMIT viewChanged();
}

void WaveformView::zoom(double factor) {
    const double share = visible_.contains(playhead_) ? visible_.shareOf(playhead_) : 0.5;
    setVisibleRange(zoomed(visible_, factor, share));
}

void WaveformView::showSelected() {
    if (selection_) { setVisibleRange(showing(visible_, *selection_)); }
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
    const QRect before = playheadArea().toAlignedRect();
    playhead_ = frame;
    const bool drawing = std::holds_alternative<WaveformGesture::Selecting>(gesture_);
    if (!drawing) { setVisibleRange(followed(visible_, frame)); }
    const QRect after = playheadArea().toAlignedRect();
    if (after == before) { return; }
    update(before);
    update(after);
}

void WaveformView::stale() {
    pictureStale_ = true;
    update();
}

const WaveformColors& WaveformView::colors() const {
    const Theme& theme = Theme::of(*this);
    return style_ == Style::hud ? theme.hudWaveform : theme.waveform;
}

// With its halo.
QRectF WaveformView::playheadArea() const {
    if (visible_.total <= 0 || (!visible_.contains(playhead_) && playhead_ < double(visible_.total))) { return {}; }
    const double x = WaveformPicture::playheadX(playhead_, visible_, width());
    return {x - halo, 0, WaveformPicture::playheadWidth + 2 * halo, double(height())};
}

QRectF WaveformView::selectedArea() const {
    if (!selection_) { return {}; }
    const auto span = WaveformPicture::span(*selection_, visible_, width());
    const double left = std::max(span.x, -2 * handleSize.width());
    const double right = std::min(span.x + std::max(span.width, 1.0), width() + 2 * handleSize.width());
    return left < right ? QRectF(left, 0, right - left, height()) : QRectF();
}

void WaveformView::ensurePicture() {
    const QSize wanted = (QSizeF(size()) * devicePixelRatioF()).toSize();
    if (!pictureStale_ && picture_.size() == wanted) { return; }
    picture_ = QPixmap(wanted);
    picture_.setDevicePixelRatio(devicePixelRatioF());
    picture_.fill(Qt::transparent);
    QPainter painter(&picture_);
    WaveformPicture::paintLanes(painter, QSizeF(size()), devicePixelRatioF(),
                                {data_.get(), detail_.get(), visible_, labels_}, colors());
    pictureStale_ = false;
    ++pictureCount_;
}

void WaveformView::paintSelection(QPainter& painter) const {
    const QRectF area = selectedArea();
    if (!area.isEmpty()) { painter.fillRect(area, colors().selection); }
}

// The edges with a handle each, over the lanes.
void WaveformView::paintHandles(QPainter& painter) const {
    const QRectF area = selectedArea();
    if (area.isEmpty()) { return; }
    for (const double edge : {area.left(), area.right() - 1}) {
        painter.fillRect(QRectF(edge, 0, 1, height()), colors().label);
        const QRectF handle(edge + 0.5 - handleSize.width() / 2, height() - handleSize.height(), handleSize.width(),
                            handleSize.height());
        painter.fillRect(handle, colors().label);
    }
}

void WaveformView::paintEvent(QPaintEvent* event) {
    ensurePicture();
    QPainter painter(this);
    painter.setClipRect(event->rect());
    painter.fillRect(event->rect(), colors().background);
    paintSelection(painter);
    painter.drawPixmap(0, 0, picture_);
    paintHandles(painter);
    // The halo keeps the playhead apart from a wave of nearly its lightness.
    const QRectF playhead = playheadArea();
    painter.fillRect(playhead, colors().background);
    painter.fillRect(playhead.adjusted(halo, 0, -halo, 0), colors().playhead);
    if (hasFocus()) {
        painter.setPen(QPen(Theme::of(*this).accent, 2));
        painter.drawRect(QRectF(rect()).adjusted(1, 1, -1, -1));
    }
}

void WaveformView::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    Q_EMIT viewChanged();
}

WaveformGesture::Surface WaveformView::surface() const {
    return {double(width()), visible_, selection_, drags_ != nullptr};
}

void WaveformView::feed(const WaveformGesture::Event& event, const QPoint& at) {
    using namespace WaveformGesture;
    const Step next = step(gesture_, event, surface());
    const bool mightDrag = possibleDrag(gesture_, surface()).has_value();
    gesture_ = next.next;
    const auto* drag = std::get_if<StartDrag>(&next.action);
    if (drags_ && !drag) { prepareDrag(mightDrag); }
    if (const auto* preview = std::get_if<Preview>(&next.action)) { showSelection(preview->range); }
    if (const auto* select = std::get_if<Select>(&next.action)) {
        showSelection(select->range);
        if (onSelect) { onSelect(select->range); }
    }
    if (const auto* seek = std::get_if<Seek>(&next.action); seek && onSeek) { onSeek(seek->frame); }
    if (drag) { startDrag(drag->selectionOnly, at); }
}

// Renders from the press on, until it is seen to be no drag.
void WaveformView::prepareDrag(bool mightDrag) {
    const auto possible = WaveformGesture::possibleDrag(gesture_, surface());
    if (possible && !mightDrag) { drags_->press(possible->selectionOnly); }
    if (!possible && mightDrag) { drags_->release(); }
}

void WaveformView::startDrag(bool selectionOnly, const QPoint& at) {
    const QPointer<WaveformView> alive(this);
    if (drags_) {
        QRectF area(rect());
        if (selectionOnly && selection_) {
            area = selectedArea().intersected(area);
            area.setWidth(std::max(area.width(), minDragWidth));
        }
        const QString form = QString::fromStdString(drags_->source().formName());
        drags_->run(this, exportPicture(grab(area.toRect()), at - area.topLeft().toPoint(), form));
    }
    if (alive) { gesture_ = WaveformGesture::Idle{}; }
}

void WaveformView::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) { return; }
    const QPointF at = event->position();
    feed(WaveformGesture::Press{{at.x(), at.y()}, event->modifiers().testFlag(Qt::ControlModifier)}, at.toPoint());
}

void WaveformView::mouseMoveEvent(QMouseEvent* event) {
    const QPointF at = event->position();
    Q_EMIT hovered(visible_.total > 0 ? frameAt(at.x()) : -1);
    if (!event->buttons().testFlag(Qt::LeftButton)) { return setCursor(cursorAt(at)); }
    feed(WaveformGesture::Move{{at.x(), at.y()}}, at.toPoint());
    scrollWhileSelecting(at);
}

Qt::CursorShape WaveformView::cursorAt(const QPointF& at) const {
    if (WaveformGesture::edgeOpposite(at.x(), surface())) { return Qt::SizeHorCursor; }
    const bool drags = drags_ && selection_ && selection_->contains(frameAt(at.x()));
    return drags ? Qt::OpenHandCursor : Qt::IBeamCursor;
}

// Scrolls on while the pointer stays beyond an edge, the faster the farther it is.
void WaveformView::scrollWhileSelecting(const QPointF& at) {
    pointer_ = at;
    const bool drawing = std::holds_alternative<WaveformGesture::Selecting>(gesture_);
    if (!drawing || visible_.isAll() || (at.x() >= 0 && at.x() <= width())) { return edgeScroll_.stop(); }
    if (!edgeScroll_.isActive()) { edgeScroll_.start(edgeScrollMs, this); }
}

void WaveformView::timerEvent(QTimerEvent* event) {
    if (event->timerId() != edgeScroll_.timerId()) { return QWidget::timerEvent(event); }
    const double beyond = pointer_.x() < 0 ? pointer_.x() : pointer_.x() - width();
    setVisibleRange(scrolled(visible_, beyond * edgeScrollShare / std::max(width(), 1) * visible_.length));
    feed(WaveformGesture::Move{{pointer_.x(), pointer_.y()}}, pointer_.toPoint());
}

// Control zooms about the pointer, all else scrolls; a touch pad's sideways movement scrolls too.
void WaveformView::wheelEvent(QWheelEvent* event) {
    const QPoint turned = event->angleDelta();
    const int most = std::abs(turned.x()) > std::abs(turned.y()) ? turned.x() : turned.y();
    const double notches = most / notch;
    if (visible_.total <= 0 || notches == 0) { return event->ignore(); }
    if (event->modifiers().testFlag(Qt::ControlModifier)) {
        setVisibleRange(zoomed(visible_, std::pow(notchZoom, notches), event->position().x() / std::max(width(), 1)));
    } else {
        setVisibleRange(scrolled(visible_, -notches * notchShare * visible_.length));
    }
    Q_EMIT hovered(frameAt(event->position().x()));
    event->accept();
}

void WaveformView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) { return; }
    const QPointF at = event->position();
    edgeScroll_.stop();
    feed(WaveformGesture::Release{{at.x(), at.y()}}, at.toPoint());
}

void WaveformView::leaveEvent(QEvent* event) {
    QWidget::leaveEvent(event);
    Q_EMIT hovered(-1);
}

bool WaveformView::seekBy(QKeyEvent* event) {
    const bool far = event->modifiers().testFlag(Qt::ShiftModifier);
    const double step = far ? shiftSeconds * sampleRate_ : std::max(arrowShare * visible_.length, 1.0);
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
            frame = double(visible_.total);
            break;
        default:
            return false;
    }
    if (visible_.total > 0 && onSeek) {
        // A playhead that was scrolled out of sight comes back.
        setVisibleRange(revealing(visible_, std::clamp(frame, 0.0, double(visible_.total))));
        onSeek(std::clamp(int64_t(frame), int64_t{0}, visible_.total));
    }
    return true;
}

bool WaveformView::zoomBy(QKeyEvent* event) {
    if (event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) { return false; }
    switch (event->key()) {
        case Qt::Key_Plus:
        case Qt::Key_Equal:
            zoom(zoomStep);
            return true;
        case Qt::Key_Minus:
            zoom(1 / zoomStep);
            return true;
        case Qt::Key_0:
            showAll();
            return true;
        case Qt::Key_Z:
            showSelected();
            return true;
        case Qt::Key_PageUp:
            setVisibleRange(scrolled(visible_, -pageShare * visible_.length));
            return true;
        case Qt::Key_PageDown:
            setVisibleRange(scrolled(visible_, pageShare * visible_.length));
            return true;
        default:
            return false;
    }
}

// Sets one edge of the selection at the playhead; the other one stays, or is the sound's end on that side.
bool WaveformView::selectBy(QKeyEvent* event) {
    const bool start = event->key() == Qt::Key_BracketLeft;
    if (!start && event->key() != Qt::Key_BracketRight) { return false; }
    FrameRange range = selection_.value_or(FrameRange{0, visible_.total});
    (start ? range.lower : range.upper) = int64_t(playhead_);
    if (range.lower >= range.upper) {
        range = start ? FrameRange{range.lower, visible_.total} : FrameRange{0, range.upper};
    }
    if (onSelect) { onSelect(range); }
    return true;
}

void WaveformView::keyPressEvent(QKeyEvent* event) {
    if (seekBy(event) || zoomBy(event) || selectBy(event)) { return; }
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
