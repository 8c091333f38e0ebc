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

    // With `selectionOnly`, drags the selection where there is one.
    void setDrags(DragSession* drags, bool selectionOnly = false) { drags_ = drags, selectionOnly_ = selectionOnly; }
    std::function<QPixmap()> picture;  // of the sound

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    DragSession* drags_ = nullptr;
    bool selectionOnly_ = false;
    std::optional<QPoint> pressedAt_;
};

}  // namespace brindlehum
