// EditorWaveView: the document's lanes under a ruler of bars, with cursor, selection and pins.
#pragma once

#include <QPixmap>
#include <QWidget>
#include <optional>
#include <string>
#include <vector>

#include "editor/document/document_model.h"
#include "editor/music/music_model.h"
#include "editor/playback/editor_transport.h"
#include "ui/editor/editor_gesture.h"

namespace brindlehum {

// Paints the lanes once into a picture, as finely as the screen, from the peaks of the document's blocks; what moves is
// painted over it.
class EditorWaveView : public QWidget {
    Q_OBJECT
public:
    EditorWaveView(DocumentModel& document, MusicModel& music, EditorTransport& transport, QWidget* parent = nullptr);

    void zoom(double factor);  // about the cursor if it is in sight, else about the middle
    void showAll();
    void showSelected();
    const EditorGesture::Gesture& gesture() const { return gesture_; }
    int pictureCount() const { return pictureCount_; }
    QSize sizeHint() const override { return {900, 320}; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    EditorGesture::Surface surface() const;
    void feed(const EditorGesture::Event& event);
    void refresh();
    void movePlayhead(double frame);
    void ensurePicture();
    void paintRuler(QPainter& painter) const;
    void paintPins(QPainter& painter) const;
    void paintMarks(QPainter& painter) const;
    double xOf(double frame) const;
    QRectF playheadArea() const;
    QRectF lanesArea() const;
    bool moveCursor(QKeyEvent* event);

    DocumentModel& document_;
    MusicModel& music_;
    EditorTransport& transport_;
    EditorGesture::Gesture gesture_;
    std::optional<FrameRange> live_;  // the selection while it is drawn
    double playhead_ = 0;
    QPixmap picture_;
    uint64_t paintedRevision_ = 0;
    VisibleRange paintedView_;
    bool isStale_ = true;
    int pictureCount_ = 0;
};

}  // namespace brindlehum
