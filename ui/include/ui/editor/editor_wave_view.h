// EditorWaveView: the document's lanes under a ruler of bars and over one of time, with cursor, selection and pins.
#pragma once

#include <QBasicTimer>
#include <QWidget>
#include <optional>
#include <string>
#include <vector>

#include "editor/document/document_model.h"
#include "editor/music/music_model.h"
#include "editor/playback/editor_transport.h"
#include "ui/editor/editor_gesture.h"
#include "ui/editor/editor_lanes.h"

namespace brindlehum {

// The lanes stay as pixels between repaints; what moves is painted over them. While a file loads, it shows what has
// been read so far, and takes no gestures.
class EditorWaveView : public QWidget {
    Q_OBJECT
public:
    EditorWaveView(DocumentModel& document, MusicModel& music, EditorTransport& transport, MainLoop& loop,
                   QWidget* parent = nullptr);

    void zoom(double factor);  // about the cursor if it is in sight, else about the middle
    void showAll();
    void showSelected();
    QRectF lanesArea() const;  // logical pixels
    const EditorGesture::Gesture& gesture() const { return gesture_; }
    EditorLanes& lanes() { return lanes_; }
    void setStyle(EditorLanes::Style style);
    QSize sizeHint() const override { return {900, 320}; }

Q_SIGNALS:
    void lanesMoved();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    bool event(QEvent* event) override;

private:
    // What is on the screen: the document, or the file that is being loaded.
    struct Showing {
        const Sound& sound;
        VisibleRange view;
        double sampleRate = 0;  // Hz
    };
    std::optional<Showing> onScreen() const;
    bool isEditable() const { return document_.doc() && !document_.loading(); }
    EditorGesture::Surface surface() const;
    void feed(const EditorGesture::Event& event);
    void refresh();
    void describe();
    void movePlayhead(double frame);
    void scrollAtEdge(const QPointF& pointer);
    bool hasBars() const;
    void paintRulers(QPainter& painter, const Showing& shown) const;
    void paintPins(QPainter& painter) const;
    void paintSelection(QPainter& painter, const QRectF& lanes) const;
    void paintMarks(QPainter& painter, const QRectF& lanes) const;
    double xOf(double frame) const;
    QRectF playheadArea() const;
    bool moveCursor(QKeyEvent* event);

    DocumentModel& document_;
    MusicModel& music_;
    EditorTransport& transport_;
    EditorGesture::Gesture gesture_;
    std::optional<FrameRange> live_;  // the selection while it is drawn
    double playhead_ = 0;
    QPointF pointer_;  // of a drag beyond an edge
    QBasicTimer edgeScroll_;
    EditorLanes lanes_;
};

}  // namespace brindlehum
