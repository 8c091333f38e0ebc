// Starts the drag of a file, or copies the file.
#include "ui/player/drag_handle.h"

#include <QApplication>
#include <QClipboard>
#include <QMimeData>
#include <QMouseEvent>

#include "ui/look/file_drag.h"
#include "ui/look/icons.h"

namespace brindlehum {

DragHandle::DragHandle(QWidget* parent) : QToolButton(parent) {
    setIcon(symbol("drag"));
    setText("Drag");
    setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    setToolTip("Drag the whole file into your DAW (uses the Drag mode)");
    setAccessibleName("Drag handle");
    setAccessibleDescription("Drag the whole file into your DAW. Space or Enter copies the file instead.");
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::OpenHandCursor);
    connect(this, &QToolButton::clicked, this, &DragHandle::copyFile);
}

void DragHandle::copyFile() {
    const auto path = file ? file() : std::nullopt;
    if (path) { QApplication::clipboard()->setMimeData(FileDrag::mimeData({*path})); }
}

void DragHandle::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) { pressedAt_ = event->pos(); }
    event->accept();
}

void DragHandle::mouseMoveEvent(QMouseEvent* event) {
    if (!pressedAt_ || (event->pos() - *pressedAt_).manhattanLength() <= QApplication::startDragDistance() / 2) {
        return;
    }
    pressedAt_.reset();
    const auto path = file ? file() : std::nullopt;
    if (!path) { return; }
    const QPixmap image = picture ? picture() : QPixmap();
    FileDrag::run(this, *path, image, {8, 8});
}

void DragHandle::mouseReleaseEvent(QMouseEvent* /*event*/) {
    pressedAt_.reset();
}

}  // namespace brindlehum
