// Feeds mouse, wheel and keys to the models.
#include "ui/editor/editor_wave_view.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QNativeGestureEvent>
#include <QToolTip>
#include <cmath>

#include "base/time_text.h"
#include "ui/editor/bar_ruler.h"
#include "ui/editor/editor_keys.h"
#include "ui/look/path_text.h"

namespace brindlehum {
namespace {

constexpr double notch = 120;       // of a wheel, in eighths of a degree
constexpr double notchPixels = 60;  // scrolled by one notch
constexpr double notchZoom = 1.25;
constexpr double keyZoom = 2;
constexpr double pageShare = 0.9;  // of what is in sight
constexpr double arrowPixels = 8;  // one arrow key
constexpr int edgeScrollMs = 16;
constexpr double edgeScrollShare = 0.2;  // of the way beyond the edge, in each step

}  // namespace

EditorWaveView::EditorWaveView(DocumentModel& document, MusicModel& music, EditorTransport& transport, MainLoop& loop,
                               QWidget* parent)
    : QWidget(parent), document_(document), music_(music), transport_(transport), lanes_(loop) {
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMinimumSize(200, 120);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setAccessibleDescription(tr(
        "Click to set the cursor, drag to select, double-click to select a bar, drag a flag in the ruler to move a "
        "pin. Left and Right move the cursor, with Control by a bar, with Shift they extend the selection, Home and "
        "End jump. Plus and Minus zoom, 0 shows all, Z the selection, Page Up and Page Down scroll, Escape clears the "
        "selection."));
    describe();
    connect(&document, &DocumentModel::changed, this, &EditorWaveView::refresh);
    connect(&music, &MusicModel::changed, this, [this] {
        update();
        Q_EMIT lanesMoved();
    });
    connect(&document, &DocumentModel::opened, this, [this] { lanes_.spectrum().clear(); });
    connect(&lanes_.spectrum(), &SpectrumLanes::changed, this, qOverload<>(&QWidget::update));
    connect(&transport, &EditorTransport::changed, this, [this] { movePlayhead(transport_.playhead().frame()); });
    connect(&transport.playhead(), &PlayheadModel::frameChanged, this, &EditorWaveView::movePlayhead);
}

void EditorWaveView::setStyle(EditorLanes::Style style) {
    lanes_.style = style;
    update();
}

void EditorWaveView::refresh() {
    describe();
    update();
}

// Screen readers say where the cursor stands and what is selected.
void EditorWaveView::describe() {
    const auto shown = onScreen();
    if (!shown) { return setAccessibleName(tr("Waveform of the document")); }
    const auto time = [&](int64_t frame) {
        return QString::fromStdString(timeText(double(frame) / std::max(shown->sampleRate, 1.0)));
    };
    if (const auto& loading = document_.loading()) {
        return setAccessibleName(tr("Waveform of %1, loading").arg(pathText(loading->url.filename())));
    }
    const QString name = pathText(document_.doc()->url.filename());
    const QString cursor = time(document_.cursor());
    if (const auto& selection = document_.selection()) {
        return setAccessibleName(tr("Waveform of %1, cursor at %2, selected %3 to %4")
                                     .arg(name, cursor, time(selection->lower), time(selection->upper)));
    }
    setAccessibleName(tr("Waveform of %1, cursor at %2").arg(name, cursor));
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
    if (!isEditable()) { return; }
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
    if (const auto* bar = std::get_if<SelectBar>(&next.action)) {
        hasBars() ? music_.selectBar(bar->frame) : document_.setSelection(FrameRange{0, document_.total()});
    }
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
    if (event->buttons().testFlag(Qt::LeftButton)) {
        feed(EditorGesture::Move{at});
        return scrollAtEdge(event->position());
    }
    setCursor(isEditable() && EditorGesture::pinAt(at, surface()) ? Qt::SizeHorCursor : Qt::IBeamCursor);
}

void EditorWaveView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) { return; }
    edgeScroll_.stop();
    feed(EditorGesture::Release{{event->position().x(), event->position().y()}});
}

// A drag beyond an edge scrolls, the faster the farther.
void EditorWaveView::scrollAtEdge(const QPointF& pointer) {
    pointer_ = pointer;
    const bool drags = std::holds_alternative<EditorGesture::Selecting>(gesture_) ||
                       std::holds_alternative<EditorGesture::MovingPin>(gesture_);
    if (!drags || document_.view().isAll() || (pointer.x() >= 0 && pointer.x() <= width())) {
        return edgeScroll_.stop();
    }
    if (!edgeScroll_.isActive()) { edgeScroll_.start(edgeScrollMs, this); }
}

void EditorWaveView::timerEvent(QTimerEvent* event) {
    if (event->timerId() != edgeScroll_.timerId()) { return QWidget::timerEvent(event); }
    const double beyond = pointer_.x() < 0 ? pointer_.x() : pointer_.x() - width();
    document_.setView(
        scrolled(document_.view(), beyond * edgeScrollShare / std::max(width(), 1) * document_.view().length));
    feed(EditorGesture::Move{{pointer_.x(), pointer_.y()}});
}

// A touch pad gives pixels, a wheel notches. Control zooms about the pointer, all else scrolls.
void EditorWaveView::wheelEvent(QWheelEvent* event) {
    const auto most = [](const QPoint& turned) {
        return std::abs(turned.x()) > std::abs(turned.y()) ? turned.x() : turned.y();
    };
    const double pixels =
        event->hasPixelDelta() ? most(event->pixelDelta()) : most(event->angleDelta()) / notch * notchPixels;
    if (!isEditable() || pixels == 0) { return event->ignore(); }
    const VisibleRange& view = document_.view();
    if (event->modifiers().testFlag(Qt::ControlModifier)) {
        const double factor = std::pow(notchZoom, pixels / notchPixels);
        document_.setView(zoomed(view, factor, event->position().x() / std::max(width(), 1)));
    } else {
        document_.setView(scrolled(view, -pixels * view.length / std::max(width(), 1)));
    }
    event->accept();
}

void EditorWaveView::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    Q_EMIT lanesMoved();
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

bool EditorWaveView::moveCursor(QKeyEvent* event) {
    using EditorKeys::Key;
    const bool far = event->modifiers().testFlag(Qt::ControlModifier);
    std::optional<Key> key;
    switch (event->key()) {
        case Qt::Key_Left:
            key = far ? Key::leftFar : Key::left;
            break;
        case Qt::Key_Right:
            key = far ? Key::rightFar : Key::right;
            break;
        case Qt::Key_Home:
            key = Key::home;
            break;
        case Qt::Key_End:
            key = Key::end;
            break;
        default:
            return false;
    }
    std::vector<int64_t> bars;
    if (hasBars() && far) {
        for (size_t i = 0; i < music_.boundaries().size(); ++i) { bars.push_back(music_.frame(int(i))); }
    }
    const double step = std::max(arrowPixels * document_.view().length / std::max(width(), 1), 1.0);
    const auto moved = EditorKeys::moved(*key, event->modifiers().testFlag(Qt::ShiftModifier),
                                         {document_.total(), document_.cursor(), document_.selection(), step, bars});
    document_.setSelection(moved.selection);
    document_.setCursor(moved.cursor);
    document_.setView(revealing(document_.view(), double(moved.cursor)));
    return true;
}

void EditorWaveView::keyPressEvent(QKeyEvent* event) {
    if (!isEditable() || (event->modifiers() & (Qt::AltModifier | Qt::MetaModifier))) {
        return QWidget::keyPressEvent(event);
    }
    if (moveCursor(event)) { return; }
    if (event->modifiers().testFlag(Qt::ControlModifier)) { return QWidget::keyPressEvent(event); }
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
            edgeScroll_.stop();
            // A drag is taken back, and only the next Escape clears the selection.
            if (!std::holds_alternative<EditorGesture::Idle>(gesture_)) { return feed(EditorGesture::Cancel{}); }
            return document_.setSelection(std::nullopt);
        default:
            QWidget::keyPressEvent(event);
    }
}

void EditorWaveView::contextMenuEvent(QContextMenuEvent* event) {
    if (!isEditable()) { return; }
    const int64_t frame = EditorGesture::frameAt(event->pos().x(), surface());
    QMenu menu;
    menu.addAction(tr("A Bar Starts Here"), [this, frame] { music_.setDownbeat(frame); });
    menu.addAction(tr("Select This Bar"), [this, frame] { music_.selectBar(frame); })
        ->setEnabled(!music_.boundaries().empty());
    menu.addAction(tr("Play from Here"), [this, frame] { transport_.play(frame); });
    menu.exec(event->globalPos());
}

// Says why a pin stands where it stands; a pinch zooms about the pointer.
bool EditorWaveView::event(QEvent* event) {
    if (event->type() == QEvent::NativeGesture) {
        const auto* pinch = static_cast<QNativeGestureEvent*>(event);
        if (pinch->gestureType() != Qt::ZoomNativeGesture || !isEditable()) { return QWidget::event(event); }
        document_.setView(zoomed(document_.view(), 1 + pinch->value(), pinch->position().x() / std::max(width(), 1)));
        return true;
    }
    if (event->type() != QEvent::ToolTip) { return QWidget::event(event); }
    const auto* help = static_cast<QHelpEvent*>(event);
    const auto pin = EditorGesture::pinAt({double(help->pos().x()), double(help->pos().y())}, surface());
    QToolTip::showText(help->globalPos(), pin ? BarRuler::reasonOf(*pin, music_) : QString(), this);
    return true;
}

}  // namespace brindlehum
