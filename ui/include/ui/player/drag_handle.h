// DragHandle: a handle for dragging the whole sound into another program.
#pragma once

#include <QToolButton>
#include <functional>
#include <optional>

namespace brindlehum {

class DragSession;

// Emits clicked() for the keyboard alone: a copy, for users who don't drag.
class DragHandle : public QToolButton {
    Q_OBJECT
public:
    explicit DragHandle(QWidget* parent = nullptr);

    void setDrags(DragSession* drags) { drags_ = drags; }
    std::function<QPixmap()> picture;  // of the sound

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    DragSession* drags_ = nullptr;
    std::optional<QPoint> pressedAt_;
};

}  // namespace brindlehum
