// Paints the document and feeds mouse and keys to the models.
#include "ui/editor/editor_wave_view.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QPaintEvent>
#include <QPainter>
#include <QToolTip>
#include <cmath>

#include "mix/player/lane_labels.h"
#include "ui/editor/bar_ruler.h"
#include "ui/editor/sound_picture.h"
#include "ui/picture/waveform_picture.h"

namespace brindlehum {
namespace {

constexpr double notch = 120;       // of a wheel, in eighths of a degree
constexpr double notchPixels = 60;  // scrolled by one notch
constexpr double notchZoom = 1.25;
constexpr double keyZoom = 2;
constexpr double pageShare = 0.9;  // of what is in sight
constexpr double arrowPixels = 8;  // one arrow key
constexpr double halo = 1;         // of the playhead, in logical pixels on either side

}  // namespace

EditorWaveView::EditorWaveView(DocumentModel& document, MusicModel& music, EditorTransport& transport, QWidget* parent)
    : QWidget(parent), document_(document), music_(music), transport_(transport) {
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMinimumSize(200, 120);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setAccessibleName("Waveform of the document");
    setAccessibleDescription(
        "Click to set the cursor, drag to select, double-click to select a bar, drag a flag in the ruler to move a "
        "pin. "
        "Left and Right move the cursor, with Shift they extend the selection, Home and End jump. Plus and Minus zoom, "
        "0 shows all, Z the selection, Page Up and Page Down scroll.");
    connect(&document, &DocumentModel::changed, this, &EditorWaveView::refresh);
    connect(&document, &DocumentModel::opened, this, &EditorWaveView::refresh);
    connect(&music, &MusicModel::changed, this, qOverload<>(&QWidget::update));
    connect(&transport, &EditorTransport::changed, this, [this] { movePlayhead(transport_.playhead().frame()); });
    connect(&transport.playhead(), &PlayheadModel::frameChanged, this, &EditorWaveView::movePlayhead);
}

void EditorWaveView::refresh() {
    if (document_.revision() != paintedRevision_ || document_.view() != paintedView_) { isStale_ = true; }
    update();
}

QRectF EditorWaveView::lanesArea() const {
    return QRectF(rect()).adjusted(0, EditorGesture::rulerHeight, 0, 0);
}

double EditorWaveView::xOf(double frame) const {
    return document_.view().shareOf(frame) * width();
}

QRectF EditorWaveView::playheadArea() const {
    if (!transport_.isPlaying() || !transport_.followsDocument() || !document_.view().contains(playhead_)) {
        return {};
    }
    return {xOf(playhead_) - halo, 0, WaveformPicture::playheadWidth + 2 * halo, double(height())};
}

void EditorWaveView::movePlayhead(double frame) {
    const QRect before = playheadArea().toAlignedRect();
    playhead_ = frame;
    if (transport_.isPlaying() && transport_.followsDocument() &&
        std::holds_alternative<EditorGesture::Idle>(gesture_)) {
        document_.setView(followed(document_.view(), frame));
    }
    update(before);
    update(playheadArea().toAlignedRect());
}

void EditorWaveView::ensurePicture() {
    const QSizeF area = lanesArea().size();
    const QSize wanted = (area * devicePixelRatioF()).toSize();
    if (!isStale_ && picture_.size() == wanted) { return; }
    picture_ = QPixmap(wanted);
    picture_.setDevicePixelRatio(devicePixelRatioF());
    picture_.fill(Qt::transparent);
    QPainter painter(&picture_);
    const WaveformData lanes = soundPicture(document_.sound(), document_.view(), wanted.width());
    std::vector<std::string> labels;
    if (document_.doc()) { labels = laneLabels(document_.doc()->info.detected, document_.sound().channels()); }
    WaveformPicture::paintLanes(painter, area, devicePixelRatioF(), {nullptr, &lanes, document_.view(), labels},
                                Theme::current().waveform);
    isStale_ = false;
    paintedRevision_ = document_.revision();
    paintedView_ = document_.view();
    ++pictureCount_;
}

void EditorWaveView::paintRuler(QPainter& painter) const {
    const auto& analysis = music_.analysis();
    const QRectF ruler(0, 0, width(), EditorGesture::rulerHeight);
    if (analysis && !music_.boundaries().empty()) {
        BarRuler::paintBars(painter, ruler, height(),
                            {document_.view(), music_.boundaries(), analysis->grid.beats, document_.doc()->sampleRate,
                             music_.isStale() || analysis->grid.barLinesUncertain()});
    } else {
        BarRuler::paintTime(painter, ruler, document_.view(), document_.doc()->sampleRate);
    }
}

void EditorWaveView::paintPins(QPainter& painter) const {
    const auto pins = surface().pins;
    const auto loop = music_.pinnedLoop().range;
    if (pins.empty()) { return; }
    if (loop) { BarRuler::paintLoop(painter, xOf(double(loop->lower)), xOf(double(loop->upper))); }
    for (const auto& [kind, frame] : pins) { BarRuler::paintPin(painter, kind, xOf(double(frame)), height()); }
}

void EditorWaveView::paintMarks(QPainter& painter) const {
    const Theme& theme = Theme::current();
    if (const auto selection = live_ ? live_ : document_.selection()) {
        for (const int64_t edge : {selection->lower, selection->upper}) {
            painter.fillRect(QRectF(xOf(double(edge)), EditorGesture::rulerHeight, 1, height()), theme.waveform.label);
        }
    }
    painter.fillRect(QRectF(xOf(double(document_.cursor())), EditorGesture::rulerHeight, 1, height()), theme.accent);
    const QRectF playhead = playheadArea();
    if (playhead.isEmpty()) { return; }
    painter.fillRect(playhead, theme.waveform.background);
    painter.fillRect(playhead.adjusted(halo, 0, -halo, 0), theme.waveform.playhead);
}

void EditorWaveView::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.setClipRect(event->rect());
    const Theme& theme = Theme::current();
    painter.fillRect(rect(), theme.waveform.background);
    if (!document_.doc()) { return; }
    ensurePicture();
    if (const auto selection = live_ ? live_ : document_.selection()) {
        const auto span = WaveformPicture::span(*selection, document_.view(), width());
        painter.fillRect(QRectF(span.x, EditorGesture::rulerHeight, std::max(span.width, 1.0), height()),
                         theme.waveform.selection);
    }
    painter.drawPixmap(QPointF(0, EditorGesture::rulerHeight), picture_);
    paintRuler(painter);
    paintPins(painter);
    paintMarks(painter);
    if (hasFocus()) {
        painter.setPen(QPen(theme.accent, 2));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(QRectF(rect()).adjusted(1, 1, -1, -1));
    }
}

EditorGesture::Surface EditorWaveView::surface() const {
    EditorGesture::Surface out{double(width()), document_.view(), {}, document_.selection(), document_.cursor(), {}};
    if (const auto& pins = music_.pins(); pins && !music_.boundaries().empty()) {
        for (const PinKind kind : allPins) { out.pins[kind] = music_.frame(boundaryOf(*pins, kind)); }
    }
    const double pixelsPerFrame = document_.view().length > 0 ? width() / document_.view().length : 1;
    out.snap = [this, pixelsPerFrame](int64_t frame) { return music_.snapFrame(frame, pixelsPerFrame); };
    return out;
}

void EditorWaveView::feed(const EditorGesture::Event& event) {
    using namespace EditorGesture;
    if (!document_.doc()) { return; }
    const Step next = step(gesture_, event, surface());
    gesture_ = next.next;
    if (const auto* preview = std::get_if<Preview>(&next.action)) { live_ = preview->range; }
    if (const auto* select = std::get_if<Select>(&next.action)) {
        live_.reset();
        document_.setSelection(select->range);
        if (select->range) { document_.setCursor(select->range->lower); }
    }
    if (const auto* cursor = std::get_if<SetCursor>(&next.action)) {
        document_.setSelection(std::nullopt);
        document_.setCursor(cursor->frame);
        // A click while playing goes on from there.
        if (transport_.isPlaying() && transport_.followsDocument()) { transport_.play(cursor->frame); }
    }
    if (const auto* pin = std::get_if<EditorGesture::MovePin>(&next.action)) { music_.movePin(pin->kind, pin->frame); }
    if (const auto* bar = std::get_if<SelectBar>(&next.action)) { music_.selectBar(bar->frame); }
    update();
}

void EditorWaveView::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) { return; }
    const QPointF at = event->position();
    feed(EditorGesture::Press{{at.x(), at.y()}, false, event->modifiers().testFlag(Qt::ShiftModifier)});
}

void EditorWaveView::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) { return; }
    feed(EditorGesture::Press{{event->position().x(), event->position().y()}, true, false});
}

void EditorWaveView::mouseMoveEvent(QMouseEvent* event) {
    const EditorGesture::Point at{event->position().x(), event->position().y()};
    if (event->buttons().testFlag(Qt::LeftButton)) { return feed(EditorGesture::Move{at}); }
    setCursor(document_.doc() && EditorGesture::pinAt(at, surface()) ? Qt::SizeHorCursor : Qt::IBeamCursor);
}

void EditorWaveView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) { return; }
    feed(EditorGesture::Release{{event->position().x(), event->position().y()}});
}

void EditorWaveView::wheelEvent(QWheelEvent* event) {
    const QPoint turned = event->angleDelta();
    const int most = std::abs(turned.x()) > std::abs(turned.y()) ? turned.x() : turned.y();
    const double notches = most / notch;
    if (!document_.doc() || notches == 0) { return event->ignore(); }
    const VisibleRange& view = document_.view();
    if (event->modifiers().testFlag(Qt::ControlModifier)) {
        document_.setView(zoomed(view, std::pow(notchZoom, notches), event->position().x() / std::max(width(), 1)));
    } else {
        document_.setView(scrolled(view, -notches * notchPixels * view.length / std::max(width(), 1)));
    }
    event->accept();
}

void EditorWaveView::zoom(double factor) {
    const VisibleRange& view = document_.view();
    const double share = view.contains(double(document_.cursor())) ? view.shareOf(double(document_.cursor())) : 0.5;
    document_.setView(zoomed(view, factor, share));
}

void EditorWaveView::showAll() {
    document_.setView(VisibleRange::all(document_.total()));
}

void EditorWaveView::showSelected() {
    if (document_.selection()) { document_.setView(showing(document_.view(), *document_.selection())); }
}

// Moves the cursor; with Shift, the selection's edge that follows it.
bool EditorWaveView::moveCursor(QKeyEvent* event) {
    const double step = std::max(arrowPixels * document_.view().length / std::max(width(), 1), 1.0);
    const int64_t before = document_.cursor();
    int64_t frame = before;
    switch (event->key()) {
        case Qt::Key_Left:
            frame -= int64_t(step);
            break;
        case Qt::Key_Right:
            frame += int64_t(step);
            break;
        case Qt::Key_Home:
            frame = 0;
            break;
        case Qt::Key_End:
            frame = document_.total();
            break;
        default:
            return false;
    }
    frame = std::clamp<int64_t>(frame, 0, document_.total());
    if (event->modifiers().testFlag(Qt::ShiftModifier)) {
        FrameRange range = document_.selection().value_or(FrameRange{before, before});
        (before == range.upper ? range.upper : range.lower) = frame;
        document_.setSelection(FrameRange{std::min(range.lower, range.upper), std::max(range.lower, range.upper)});
    } else {
        document_.setSelection(std::nullopt);
    }
    document_.setCursor(frame);
    document_.setView(revealing(document_.view(), double(frame)));
    return true;
}

void EditorWaveView::keyPressEvent(QKeyEvent* event) {
    if (!document_.doc() || (event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier))) {
        return QWidget::keyPressEvent(event);
    }
    if (moveCursor(event)) { return; }
    switch (event->key()) {
        case Qt::Key_Plus:
        case Qt::Key_Equal:
            return zoom(keyZoom);
        case Qt::Key_Minus:
            return zoom(1 / keyZoom);
        case Qt::Key_0:
            return showAll();
        case Qt::Key_Z:
            return showSelected();
        case Qt::Key_PageUp:
            return document_.setView(scrolled(document_.view(), -pageShare * document_.view().length));
        case Qt::Key_PageDown:
            return document_.setView(scrolled(document_.view(), pageShare * document_.view().length));
        case Qt::Key_Escape:
            feed(EditorGesture::Cancel{});
            if (live_) { return live_.reset(); }
            return document_.setSelection(std::nullopt);
        default:
            QWidget::keyPressEvent(event);
    }
}

void EditorWaveView::contextMenuEvent(QContextMenuEvent* event) {
    if (!document_.doc()) { return; }
    const int64_t frame = EditorGesture::frameAt(event->pos().x(), surface());
    QMenu menu;
    menu.addAction("A Bar Starts Here", [this, frame] { music_.setDownbeat(frame); });
    menu.addAction("Select This Bar", [this, frame] { music_.selectBar(frame); })
        ->setEnabled(!music_.boundaries().empty());
    menu.addAction("Play from Here", [this, frame] { transport_.play(frame); });
    menu.exec(event->globalPos());
}

// Says why a pin stands where it stands.
bool EditorWaveView::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip) { return QWidget::event(event); }
    const auto* help = static_cast<QHelpEvent*>(event);
    const auto pin = EditorGesture::pinAt({double(help->pos().x()), double(help->pos().y())}, surface());
    QToolTip::showText(help->globalPos(), pin ? BarRuler::reasonOf(*pin, music_) : QString(), this);
    return true;
}

void EditorWaveView::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange) {
        isStale_ = true;
        update();
    }
}

}  // namespace brindlehum
