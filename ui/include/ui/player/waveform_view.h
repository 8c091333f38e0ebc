// WaveformView: shows the lanes of a file and turns the mouse and the keyboard into seek, selection, drag and zoom.
#pragma once

#include <QBasicTimer>
#include <QPixmap>
#include <QWidget>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "ui/picture/waveform_picture.h"
#include "ui/player/waveform_gesture.h"

namespace brindlehum {

class DragSession;

// Holds copies of what it shows; the owner sets them again after each change of the model. The lanes are painted once
// into a picture; selection and playhead are drawn apart from it, so that moving them repaints only a strip.
class WaveformView : public QWidget {
    Q_OBJECT
public:
    enum class Style { hud, window };

    explicit WaveformView(Style style, QWidget* parent = nullptr);

    void setData(WaveformPtr overview);
    // Finer than the overview, for a part of the sound; null when there is none.
    void setDetail(WaveformPtr detail);
    // Shows all of a sound of another length.
    void setTotalFrames(int64_t frames, double sampleRate);
    void setLaneLabels(std::vector<std::string> labels);
    // Ignored while the user is drawing a selection.
    void setSelection(std::optional<FrameRange> selection);
    // Turns the page when the playhead runs out of sight.
    void setPlayhead(double frame);

    const VisibleRange& visibleRange() const { return visible_; }
    void setVisibleRange(const VisibleRange& visible);
    // About the playhead if it is in sight, else about the middle.
    void zoom(double factor);
    void showAll() { setVisibleRange(VisibleRange::all(visible_.total)); }
    void showSelected();
    static constexpr double zoomStep = 2;  // of a key

    std::function<void(int64_t frame)> onSeek;
    std::function<void(std::optional<FrameRange>)> onSelect;
    // Null: drags only select.
    void setDrags(DragSession* drags) { drags_ = drags; }
    std::function<void()> onTogglePlay;

    const std::optional<FrameRange>& selection() const { return selection_; }
    const WaveformGesture::Gesture& gesture() const { return gesture_; }
    int64_t frameAt(double x) const { return WaveformGesture::frameAt(x, surface()); }
    int lanes() const;
    // Columns of device pixels, of which a picture can show one bucket each.
    int columns() const { return int(width() * devicePixelRatioF()); }
    // How often the lanes have been painted.
    int pictureCount() const { return pictureCount_; }
    QSize sizeHint() const override { return {720, 200}; }

Q_SIGNALS:
    // The frame under the pointer; negative when the pointer has left.
    void hovered(qint64 frame);
    // The visible range or the number of columns has changed.
    void viewChanged();

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    WaveformGesture::Surface surface() const;
    void feed(const WaveformGesture::Event& event, const QPoint& at);
    void scrollWhileSelecting(const QPointF& at);
    void startDrag(bool selectionOnly, const QPoint& at);
    void prepareDrag(bool mightDrag);
    Qt::CursorShape cursorAt(const QPointF& at) const;
    void showSelection(std::optional<FrameRange> selection);
    void stale();
    void ensurePicture();
    void paintSelection(QPainter& painter) const;
    void paintHandles(QPainter& painter) const;
    QRectF selectedArea() const;
    QRectF playheadArea() const;
    const WaveformColors& colors() const;
    bool seekBy(QKeyEvent* event);
    bool zoomBy(QKeyEvent* event);
    bool selectBy(QKeyEvent* event);

    Style style_;
    WaveformPtr data_;
    WaveformPtr detail_;
    VisibleRange visible_;
    double sampleRate_ = 48000;  // Hz
    std::vector<std::string> labels_;
    std::optional<FrameRange> selection_;
    double playhead_ = 0;  // frames
    WaveformGesture::Gesture gesture_;
    DragSession* drags_ = nullptr;
    QBasicTimer edgeScroll_;  // runs while a selection is drawn beyond an edge
    QPointF pointer_;
    QPixmap picture_;
    bool pictureStale_ = true;
    int pictureCount_ = 0;
};

}  // namespace brindlehum
