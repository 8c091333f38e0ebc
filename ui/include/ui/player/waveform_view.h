// WaveformView: shows the lanes of a file and turns the mouse and the keyboard into seek, selection and drag.
#pragma once

#include <QPixmap>
#include <QWidget>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "ui/picture/waveform_picture.h"
#include "ui/player/waveform_gesture.h"

namespace brindlehum {

// Holds copies of what it shows; the owner sets them again after each change of the model. The lanes are painted once
// into a picture; selection and playhead are drawn apart from it, so that moving them repaints only a strip.
class WaveformView : public QWidget {
    Q_OBJECT
public:
    enum class Style { hud, window };

    explicit WaveformView(Style style, QWidget* parent = nullptr);

    void setData(WaveformPtr overview);
    void setTotalFrames(int64_t frames, double sampleRate);
    void setLaneLabels(std::vector<std::string> labels);
    // Ignored while the user is drawing a selection.
    void setSelection(std::optional<FrameRange> selection);
    void setPlayhead(double frame);

    std::function<void(int64_t frame)> onSeek;
    std::function<void(std::optional<FrameRange>)> onSelect;
    std::function<std::optional<std::filesystem::path>(bool selectionOnly)> exportForDrag;
    std::function<void()> onTogglePlay;

    const std::optional<FrameRange>& selection() const { return selection_; }
    const WaveformGesture::Gesture& gesture() const { return gesture_; }
    int64_t frameAt(double x) const { return WaveformGesture::frameAt(x, width(), totalFrames_); }
    int lanes() const;
    // How often the lanes have been painted.
    int pictureCount() const { return pictureCount_; }
    QSize sizeHint() const override { return {720, 200}; }

Q_SIGNALS:
    // The frame under the pointer; negative when the pointer has left.
    void hovered(qint64 frame);

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void feed(const WaveformGesture::Event& event, const QPoint& at);
    void startDrag(bool selectionOnly, const QPoint& at);
    void showSelection(std::optional<FrameRange> selection);
    void stale();
    void ensurePicture();
    void paintSelection(QPainter& painter) const;
    QRect playheadRect() const;
    const WaveformColors& colors() const;
    bool seekBy(QKeyEvent* event);

    Style style_;
    WaveformPtr data_;
    int64_t totalFrames_ = 0;
    double sampleRate_ = 48000;  // Hz
    std::vector<std::string> labels_;
    std::optional<FrameRange> selection_;
    double playhead_ = 0;  // frames
    WaveformGesture::Gesture gesture_;
    QPixmap picture_;
    bool pictureStale_ = true;
    int pictureCount_ = 0;
};

}  // namespace brindlehum
